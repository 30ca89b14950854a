#ifndef QIVO_UI_COMMON_NAVIFRAMEPOPEVENTLISTENER_H
#define QIVO_UI_COMMON_NAVIFRAMEPOPEVENTLISTENER_H

namespace QivoUi
{

/** Is asked before a screen leaves the stack; see NaviFrameItemPopHandler. */
class NaviFramePopEventListener
{
public:
    virtual ~NaviFramePopEventListener() = default;

    /** The screen is about to be popped: true lets it go, false keeps it. */
    virtual bool OnViewPoped() = 0;
};

} // namespace QivoUi

#endif
