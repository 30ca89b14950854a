#ifndef CARDS_SCREENCONTROLLER_H
#define CARDS_SCREENCONTROLLER_H

#include "common/BaseViewController.h"
#include "common/NaviFrameStateListener.h"
#include "common/RotaryEventListener.h"
#include "views/ThemedView.h"
#include <list>
#include <utility>

namespace Cards
{

/**
 * What all the wallet's screens have in common: who owns a controller, and who gets the bezel.
 *
 * A controller that Open() made lives until its view's layout has been deleted, whichever way the
 * screen left the stack. It must not go earlier, nor while the deletion is under way:
 * DeInitialize() adds a job, and that releases it.
 *
 * Each screen takes the bezel when it is opened, also one that has no use for it: the screen below
 * would turn unseen. It gives the bezel back when its layout is deleted.
 */
class ScreenController : public QivoUi::BaseViewController,
                         public QivoUi::RotaryEventListener,
                         public QivoUi::NaviFrameStateListener,
                         public TapListener
{
public:
    using Handle = std::shared_ptr<QivoUi::NaviFrameItemPopHandler>;

    /** Makes a controller and shows its screen, with a transition or without. */
    template <typename Controller, typename... Arguments>
    static void Open(bool animated, Arguments&&... arguments)
    {
        auto controller = std::make_shared<Controller>(std::forward<Arguments>(arguments)...);
        sOpen.push_back(controller);
        controller->Initialize();
        controller->ShowView(animated);
    }

    /** Releases all controllers at the end, when their layouts have been deleted. */
    static void ReleaseAll();

    /** The handle of the first screen, which stays as long as the window. */
    static Handle GetHome();

    void Initialize() override;
    void DeInitialize() override;

    Evas_Object* GetRotaryViewObject() override;
    void OnItemResume() override {}
    void OnItemPause() override {}
    void OnItemTransitionFinished() override {}
    void OnTapped(const std::string& /*part*/, int /*index*/) override {}

protected:
    virtual std::shared_ptr<ThemedView> MakeView() = 0;
    virtual void TakeBezel();
    virtual void LeaveBezel();

private:
    static void SReleaseCB(void* data);

    static std::list<std::shared_ptr<ScreenController>> sOpen;
};

} // namespace Cards

#endif
