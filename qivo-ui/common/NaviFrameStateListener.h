#ifndef QIVO_UI_COMMON_NAVIFRAMESTATELISTENER_H
#define QIVO_UI_COMMON_NAVIFRAMESTATELISTENER_H

namespace QivoUi
{

/**
 * Follows one screen on the stack.
 *
 * Named in the screen's NaviFrameItemData and never owned; it must outlive its item on the
 * stack, and the frame when the item's handle went first, for the frame then does not hear of the
 * item's end. The calls come from inside the toolkit's own, and a listener may push, pop or delete
 * screens in them; but not delete the new screen inside its own push, before it has its handle.
 */
class NaviFrameStateListener
{
public:
    virtual ~NaviFrameStateListener() = default;

    /**
     * The screen is on top and the application in the foreground; may be told repeatedly. After an
     * animated pop it is told at the end of the transition, which has shown the screen already.
     */
    virtual void OnItemResume() = 0;

    /** The screen is covered by another one, or the application left the foreground. */
    virtual void OnItemPause() = 0;

    /**
     * A transition has ended, and this screen is on top. In general that of the animated push which
     * brought it there; a push that followed another one quickly leaves a telling over for a later
     * transition, also for that of a pop.
     */
    virtual void OnItemTransitionFinished() = 0;
};

} // namespace QivoUi

#endif
