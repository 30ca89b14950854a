#ifndef QIVO_UI_COMMON_NAVIFRAMEPOPTRANSITIONEVENTLISTENER_H
#define QIVO_UI_COMMON_NAVIFRAMEPOPTRANSITIONEVENTLISTENER_H

namespace QivoUi
{

/**
 * Hears of the end of one animated pop; given to NaviFrame::PopItem(), never owned. It must live
 * until it is told, or until a later animated pop replaces it.
 */
class NaviFramePopTransitionEventListener
{
public:
    virtual ~NaviFramePopTransitionEventListener() = default;

    /** The pop's animation has ended. Told once, then forgotten. */
    virtual void OnPopTransitionFinished() = 0;
};

} // namespace QivoUi

#endif
