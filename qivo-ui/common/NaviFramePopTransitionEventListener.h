#ifndef QIVO_UI_COMMON_NAVIFRAMEPOPTRANSITIONEVENTLISTENER_H
#define QIVO_UI_COMMON_NAVIFRAMEPOPTRANSITIONEVENTLISTENER_H

namespace QivoUi
{

/**
 * Hears of the end of one animated pop; given to NaviFrame::PopItem(), never owned. It must live
 * until it is told, or until a later animated pop replaces it. When the pop is refused, or
 * ignored by the toolkit because the screen's own push is still moving, it is told at the end of
 * whichever transition comes next.
 */
class NaviFramePopTransitionEventListener
{
public:
    virtual ~NaviFramePopTransitionEventListener() = default;

    /**
     * The pop's animation has ended. Told once, then forgotten.
     *
     * The popped item is deleted only after this, and its deletion still uses the handle, the view
     * and the controller: none of them may be released in here. All may in a job (ecore_job_add())
     * that BaseViewController::DeInitialize() adds.
     */
    virtual void OnPopTransitionFinished() = 0;
};

} // namespace QivoUi

#endif
