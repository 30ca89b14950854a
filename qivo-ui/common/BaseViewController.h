#ifndef QIVO_UI_COMMON_BASEVIEWCONTROLLER_H
#define QIVO_UI_COMMON_BASEVIEWCONTROLLER_H

#include "common/BaseView.h"
#include "common/BaseViewEventListener.h"
#include "common/NaviFrameItemPopHandler.h"
#include <memory>

namespace QivoUi
{

/**
 * The base of every screen's controller: owns the view, shows it, and decides for it.
 *
 * A controller's life, and what belongs in each hook:
 *  1. Initialize(): make the view, keep it in mBaseViewPtr, have it build itself
 *     (BaseView::CreateView()), and start to follow whatever the screen shows.
 *  2. ShowView(), once: attaches to the view and pushes it. The back key then pops the screen; as
 *     the only screen it lowers the window instead. While the screen's own push is moving a press
 *     of the back key is lost.
 *  3. DeInitialize(): the view's widgets are being deleted; stop following. It must not release
 *     the view, whose deletion is still under way; a job (ecore_job_add()) that it adds may release
 *     view, handle and controller. The end of the pop's transition, before it, is too early.
 *  4. Destruction releases the handle, then the view; it neither pops nor deinitializes. A view
 *     that somebody else holds must have its mViewEventListener set to null before.
 */
class BaseViewController : public BaseViewEventListener
{
public:
    BaseViewController() = default;
    ~BaseViewController() override = default;

    /** Pops the own screen with animation; does nothing when it was never shown. */
    void OnViewBackEvent() override;

    /**
     * @return true: a controller never refuses a pop. One that does, by overriding this, refuses in
     * OnViewBackEvent() as well: of a pop that has begun, a callback is left to a later transition
     * (NaviFramePopTransitionEventListener.h).
     */
    bool OnViewPopEvent() override;

    /** Runs DeInitialize(). */
    void OnViewDeleteEvent() override;

    /**
     * Makes and builds the view; called once, before ShowView(). Called again it lets go of the
     * view before, whose layout stays in the widget tree with the back key on the dead view: it
     * must not be in sight any more.
     */
    virtual void Initialize() = 0;

    /** Undoes what Initialize() started outside the view; called only from the view's deletion. */
    virtual void DeInitialize() = 0;

    /**
     * Attaches to the view and pushes it.
     *
     * @return a copy of the kept handle. Without a view it stays as it was, with error
     *         "mBaseViewPtr is NULL"; empty when the push failed, with error
     *         "[Failed] Get Pop Handler".
     *
     * Showing twice pushes the view twice and keeps the second handle only. The view's one layout
     * moves to the second screen; once that is popped, or when the view is shown after its screen
     * was popped, what remains is a blank page that the back key does not leave.
     */
    virtual std::shared_ptr<NaviFrameItemPopHandler> ShowView(bool animated);

protected:
    /** The view; filled by Initialize(). */
    std::shared_ptr<BaseView> mBaseViewPtr;

    /** The handle of the shown view; empty until ShowView(). */
    std::shared_ptr<NaviFrameItemPopHandler> mPopHandlerPtr;
};

} // namespace QivoUi

#endif
