#ifndef QIVO_UI_COMMON_NAVIFRAMELOWEREVENTLISTENER_H
#define QIVO_UI_COMMON_NAVIFRAMELOWEREVENTLISTENER_H

namespace QivoUi
{

/** Hears that the user backed out of the last screen; set on NaviFrame, never owned. */
class NaviFrameLowerEventListener
{
public:
    virtual ~NaviFrameLowerEventListener() = default;

    /** The main window has been lowered; the only screen is still on the stack. */
    virtual void OnNaviFrameLowered() = 0;
};

} // namespace QivoUi

#endif
