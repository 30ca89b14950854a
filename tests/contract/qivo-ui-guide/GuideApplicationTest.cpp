#include "qivo-ui-guide/GuideApplication.h"

#include "common/NaviFrame.h"
#include "common/NaviFrameItemData.h"
#include "harness/Toolkit.h"
#include "qivo-ui-guide/application/TestApplication.h"
#include <cstring>
#include <memory>
#include <new>

using QivoUi::Application;
using QivoUi::ExtraDataMap;
using QivoUi::ExtraDataMapPtr;
using QivoUi::GuideApplication;
using QivoUi::GuideViewController;
using QivoUi::NaviFrame;
using QivoUi::NaviFrameItemData;

namespace
{

class GuideApplicationTest : public ToolkitTest
{
protected:
    void SetUp() override
    {
        ToolkitTest::SetUp();
        mApp = std::make_unique<GuideApplication>();
        Recorder::Name(mApp.get(), "app");
    }

    void TearDown() override
    {
        mApp.reset();
        Application::mWindow = nullptr;
        elm_theme_extension_del(nullptr,
                                (Platform::ResourceDirectory() + "edje/qivoui.edj").c_str());
        elm_app_base_scale_set(1.0);
        ToolkitTest::TearDown();
    }

    // The main window with its tree, ready to show the guide.
    void SetUpLayout()
    {
        Application::mWindow = mWindow;
        mApp->OnSetupLayout();
        Recorder::Take();
    }

    // What a hook of the base does; the two must do the same.
    static Lines LinesOfTheBase(void (Application::*hook)())
    {
        PlainApplication base;
        const Lines lines = LinesOf(base, hook);
        Recorder::Reset();
        Platform::Reset();
        return lines;
    }

    static Lines LinesOf(Application& app, void (Application::*hook)())
    {
        (app.*hook)();
        evas_object_del(Application::mWindow);
        Application::mWindow = nullptr;
        ecore_event_handler_del(app.mPowerKeyHandler);
        app.mPowerKeyHandler = nullptr;
        return Recorder::Take();
    }

    std::unique_ptr<GuideApplication> mApp;
};

TEST_F(GuideApplicationTest, IsTheApplicationThatIsCreated)
{
    std::unique_ptr<Application> app(CreateApplication());

    auto* guide = dynamic_cast<GuideApplication*>(app.get());
    ASSERT_NE(guide, nullptr);
    EXPECT_EQ(guide->mGuideViewController, nullptr);
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(GuideApplicationTest, IsCreatedAnewEachTime)
{
    const std::unique_ptr<Application> first(CreateApplication());
    const std::unique_ptr<Application> second(CreateApplication());

    EXPECT_NE(first, second);
}

TEST_F(GuideApplicationTest, StartsWithoutAController)
{
    alignas(GuideApplication) unsigned char memory[sizeof(GuideApplication)];
    std::memset(memory, 0xa5, sizeof(memory));

    auto* app = new (memory) GuideApplication();

    EXPECT_EQ(app->mGuideViewController, nullptr);
    app->~GuideApplication();
}

TEST_F(GuideApplicationTest, CreatesAsTheBaseDoes)
{
    const Lines expected = LinesOfTheBase(&Application::OnAppCreateImpl);
    ASSERT_FALSE(expected.empty());

    EXPECT_EQ(LinesOf(*mApp, &Application::OnAppCreateImpl), expected);
}

TEST_F(GuideApplicationTest, TerminatesAsTheBaseDoes)
{
    const Lines expected = LinesOfTheBase(&Application::OnAppTerminateImpl);
    ASSERT_FALSE(expected.empty());
    NaviFrame::GetInstance();

    EXPECT_EQ(LinesOf(*mApp, &Application::OnAppTerminateImpl), expected);
    EXPECT_EQ(NaviFrame::mInstance, nullptr);
}

TEST_F(GuideApplicationTest, PausesAsTheBaseDoes)
{
    const Lines expected = LinesOfTheBase(&Application::OnAppPauseImpl);
    ASSERT_FALSE(expected.empty());

    EXPECT_EQ(LinesOf(*mApp, &Application::OnAppPauseImpl), expected);
    EXPECT_EQ(mApp->mAppState, Application::APP_STATE_PAUSED);
}

TEST_F(GuideApplicationTest, ResumesAsTheBaseDoes)
{
    const Lines expected = {"ecore_event_handler_add(" + std::to_string(ECORE_EVENT_KEY_UP) +
                                ", Application::OnKeyReleasedCB, app)",
                            "listener.OnAppResume()"};
    TestListener listener("listener");
    mApp->RegisterAppEventListener(&listener);

    mApp->OnAppResumeImpl();

    EXPECT_EQ(Recorder::Take(), expected);
    EXPECT_EQ(mApp->mAppState, Application::APP_STATE_RESUMED);
    mApp->UnRegisterPowerKeyEvent();
}

TEST_F(GuideApplicationTest, OnlyTracesAPauseByThePowerKey)
{
    mApp->OnAppPausedByPowerKey();

    EXPECT_EQ(Recorder::Take(),
              Lines({"begin(OnAppPausedByPowerKey)", "end(OnAppPausedByPowerKey)"}));
}

TEST_F(GuideApplicationTest, TracesThePowerKeyBeforeItExits)
{
    mApp->mIsPowerKeyReleased = true;

    mApp->OnAppPauseImpl();

    EXPECT_EQ(Recorder::Take(), Lines({"begin(OnAppPausedByPowerKey)", "end(OnAppPausedByPowerKey)",
                                       "ui_app_exit()"}));
    EXPECT_FALSE(mApp->mIsPowerKeyReleased);
}

TEST_F(GuideApplicationTest, ShowsNothingAtTheEndOfTheSetUp)
{
    EXPECT_FALSE(mApp->ShowView());

    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(GuideApplicationTest, InheritsTheHooksItDoesNotFill)
{
    mApp->OnAppSystemLangChangedImpl();

    EXPECT_FALSE(mApp->OnVocraOperation(std::make_shared<ExtraDataMap>()));
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(GuideApplicationTest, DoesNotListenToTheLoweringOfItsWindow)
{
    SetUpLayout();

    EXPECT_EQ(NaviFrame::GetInstance()->mNaviFrmaeLowerEventListener, nullptr);
}

TEST_F(GuideApplicationTest, InitializesAControllerThenShowsItsView)
{
    SetUpLayout();

    EXPECT_TRUE(mApp->AppControllOperationImpl("operation", nullptr));

    EXPECT_EQ(Recorder::TakeOnly({"device_", "elm_naviframe_item_push", "error", "info"}),
              Lines({"device_battery_is_charging()",
                     "device_add_callback(2, GuideViewController::DeviceChangedCallback, ?)",
                     "elm_naviframe_item_push(naviframe1, '', null, null, layout2, 'empty')"}));
    ASSERT_NE(mApp->mGuideViewController, nullptr);
    EXPECT_EQ(mApp->mGuideViewController.use_count(), 1);
    EXPECT_EQ(Recorder::NameOf(mApp->mGuideViewController->mGuideViewPtr->GetViewLayout()),
              "layout2");
    EXPECT_EQ(mApp->mGuideViewController->mGuideViewPtr->mViewEventListener,
              mApp->mGuideViewController.get());
}

TEST_F(GuideApplicationTest, KeepsNoShareOfTheShownItem)
{
    SetUpLayout();

    mApp->AppControllOperationImpl("operation", nullptr);

    ASSERT_NE(mApp->mGuideViewController->mPopHandlerPtr, nullptr);
    EXPECT_EQ(mApp->mGuideViewController->mPopHandlerPtr.use_count(), 1);
}

// Only a push shows a transition; a screen without one is inserted.
TEST_F(GuideApplicationTest, ShowsTheViewWithATransition)
{
    SetUpLayout();
    auto other = std::make_shared<NaviFrameItemData>();
    other->mViewLayout = elm_layout_add(NaviFrame::GetInstance()->GetParent());
    const auto otherItem = NaviFrame::GetInstance()->PushNaviframeItem(other, false);
    Recorder::Take();

    mApp->AppControllOperationImpl("operation", nullptr);

    EXPECT_EQ(Recorder::TakeOnly({"elm_naviframe_item_push", "elm_naviframe_item_insert", "info"}),
              Lines({"elm_naviframe_item_push(naviframe1, '', null, null, layout3, 'empty')",
                     "info(PushNaviframeItem) push animationStart"}));
}

TEST_F(GuideApplicationTest, AnswersTrueWithoutAScreen)
{
    EXPECT_TRUE(mApp->AppControllOperationImpl("operation", nullptr));

    EXPECT_NE(mApp->mGuideViewController, nullptr);
    EXPECT_EQ(Recorder::TakeLog(), Lines({"error(CreateView) [Failed] Invalid parent",
                                          "error(Show) [Failed] Invalid NaviFrameItemDataPtr",
                                          "error(ShowView) [Failed] Get Pop Handler"}));
}

// What an application of its own shows for a request.
Lines LinesOfShowing(Evas_Object* window, const std::string& operation, ExtraDataMapPtr extraData)
{
    Recorder::Reset();
    Platform::Reset();
    Recorder::Name(window, "window");
    GuideApplication app;
    Application::mWindow = window;
    app.OnSetupLayout();
    Recorder::Take();
    app.AppControllOperationImpl(operation, extraData);
    const Lines lines = Recorder::TakeOnly({"elm_", "evas_", "eext_", "device_", "dgettext"});
    evas_object_del(app.mMainLayout);
    NaviFrame::Destroy();
    return lines;
}

TEST_F(GuideApplicationTest, ShowsTheSameScreenForEveryRequest)
{
    const Lines expected = LinesOfShowing(mWindow, "default", nullptr);
    ASSERT_GT(expected.size(), 20u);

    EXPECT_EQ(LinesOfShowing(mWindow, "", std::make_shared<ExtraDataMap>()), expected);
    EXPECT_EQ(LinesOfShowing(mWindow, "another",
                             std::make_shared<ExtraDataMap>(ExtraDataMap{{"key", "value"}})),
              expected);
}

TEST_F(GuideApplicationTest, ReplacesTheControllerOfAnEarlierRequest)
{
    SetUpLayout();
    mApp->AppControllOperationImpl("first", nullptr);
    const std::weak_ptr<GuideViewController> earlier = mApp->mGuideViewController;

    mApp->AppControllOperationImpl("second", nullptr);

    EXPECT_TRUE(earlier.expired());
    EXPECT_NE(mApp->mGuideViewController, nullptr);
}

TEST_F(GuideApplicationTest, ReleasesTheEarlierControllerBeforeTheNewOneStarts)
{
    SetUpLayout();
    mApp->AppControllOperationImpl("first", nullptr);
    Recorder::Take();

    mApp->AppControllOperationImpl("second", nullptr);

    EXPECT_EQ(
        Recorder::TakeOnly({"elm_naviframe_item_pop_cb_set(item1", "device_battery"}),
        Lines({"elm_naviframe_item_pop_cb_set(item1, null, ?)", "device_battery_is_charging()"}));
}

// Following the charger ends with the deletion of the screen, not with the application.
TEST_F(GuideApplicationTest, ReleasesTheControllerWithoutDeinitializingIt)
{
    SetUpLayout();
    mApp->AppControllOperationImpl("operation", nullptr);
    const std::weak_ptr<GuideViewController> controller = mApp->mGuideViewController;
    Recorder::Take();

    mApp.reset();

    EXPECT_TRUE(controller.expired());
    EXPECT_EQ(Recorder::TakeOnly({"device_", "mark", "error", "warn"}), Lines());
}

TEST_F(GuideApplicationTest, ReleasesNothingWithoutALaunchRequest)
{
    Recorder::Take();

    mApp.reset();

    EXPECT_EQ(Recorder::Take(), Lines());
}

} // namespace
