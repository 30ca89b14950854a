#ifndef QIVO_UI_COMMON_NAVIFRAMEPOPEVENTLISTENER_H
#define QIVO_UI_COMMON_NAVIFRAMEPOPEVENTLISTENER_H

namespace QivoUi
{

/**
 * Is asked before a screen is popped; see NaviFrameItemPopHandler. A deletion asks nobody.
 *
 * It may push screens and pop others meanwhile. One that deletes the screen which it is asked
 * about must refuse: the toolkit would go on to pop a dead item.
 */
class NaviFramePopEventListener
{
public:
    virtual ~NaviFramePopEventListener() = default;

    /** The screen is about to be popped: true lets it go, false keeps it. */
    virtual bool OnViewPoped() = 0;
};

} // namespace QivoUi

#endif
