#include "common/navi-frame/NaviFrameFixture.h"
#include "qivo-ui-guide/GuideViewController.h"
#include <Ecore_Input.h>

using QivoUi::GuideViewController;

namespace
{

/** The framework with the watch's own back key, which finds its object by itself. */
class BackKeyTest : public NaviFrameFixture
{
protected:
    /** Presses the back key as the watch does, and tells how often the window was lowered. */
    static int TimesBackLowers()
    {
        Recorder::Take();
        bool isDelivered = false;
        auto* key = static_cast<Ecore_Event_Key*>(std::calloc(1, sizeof(Ecore_Event_Key)));
        key->keyname = key->key = "XF86Back";
        Ecore_Event_Handler* handler = ecore_event_handler_add(
            ECORE_EVENT_KEY_UP,
            [](void* data, int, void*) -> Eina_Bool
            {
                *static_cast<bool*>(data) = true;
                return ECORE_CALLBACK_PASS_ON;
            },
            &isDelivered);
        ecore_event_add(ECORE_EVENT_KEY_UP, key, nullptr, nullptr);
        EXPECT_TRUE(Toolkit::RunUntil([&] { return isDelivered; }));
        ecore_event_handler_del(handler);
        return static_cast<int>(Recorder::TakeOnly({"elm_win_lower(window)"}).size());
    }

    static std::unique_ptr<GuideViewController> MakeInitialized()
    {
        auto controller = std::make_unique<GuideViewController>();
        controller->Initialize();
        return controller;
    }
};

TEST_F(BackKeyTest, LeavesTheOnlyScreen)
{
    const auto controller = MakeInitialized();
    controller->ShowView(true);
    EXPECT_EQ(TimesBackLowers(), 1);
}

TEST_F(BackKeyTest, PassesOverAScreenThatIsBuiltAndNotShown)
{
    const auto shown = MakeInitialized();
    shown->ShowView(true);
    const auto built = MakeInitialized();
    EXPECT_EQ(TimesBackLowers(), 1);
}

TEST_F(BackKeyTest, LeavesTheScreenOfASecondInitialization)
{
    const auto controller = MakeInitialized();
    controller->Initialize();
    controller->ShowView(true);
    EXPECT_EQ(TimesBackLowers(), 1);
}

TEST_F(BackKeyTest, PassesOverTheScreenOfAControllerThatWasReleasedUnseen)
{
    const auto shown = MakeInitialized();
    shown->ShowView(true);
    MakeInitialized().reset();
    EXPECT_EQ(TimesBackLowers(), 1);
}

} // namespace
