#include "common/NaviFrame.h"
#include "common/RotaryEventManager.h"
#include "harness/Toolkit.h"
#include "qivo-ui-guide/Application.h"
#include "qivo-ui-guide/application/TestApplication.h"

using QivoUi::Application;
using QivoUi::NaviFrame;
using QivoUi::RotaryEventManager;

namespace
{

const Lines kUnsetSettings = {
    "system_settings_unset_changed_cb(16)", "system_settings_unset_changed_cb(14)",
    "system_settings_unset_changed_cb(13)", "system_settings_unset_changed_cb(12)"};

std::string HandlerAdded()
{
    return "ecore_event_handler_add(" + std::to_string(ECORE_EVENT_KEY_UP) +
           ", Application::OnKeyReleasedCB, app)";
}

class ApplicationTrampolineTest : public testing::Test
{
protected:
    void SetUp() override
    {
        Recorder::Reset();
        Platform::Reset();
    }

    HookedApplication mApp;
};

TEST_F(ApplicationTrampolineTest, CreatesAndAlwaysAnswersTrue)
{
    EXPECT_TRUE(Application::SOnAppCreate(&mApp));

    EXPECT_EQ(Recorder::Take(), Lines({"mark(SOnAppCreate)", "OnAppCreateImpl()"}));
}

TEST_F(ApplicationTrampolineTest, Pauses)
{
    Application::SOnAppPause(&mApp);

    EXPECT_EQ(Recorder::Take(), Lines({"mark(SOnAppPause)", "OnAppPauseImpl()"}));
}

TEST_F(ApplicationTrampolineTest, Resumes)
{
    Application::SOnAppResume(&mApp);

    EXPECT_EQ(Recorder::Take(), Lines({"mark(SOnAppResume)", "OnAppResumeImpl()"}));
}

// The application dies before the marker is written.
TEST_F(ApplicationTrampolineTest, TerminatesAndDeletesTheApplication)
{
    auto* app = new HookedApplication();

    Application::SOnAppTerminate(app);

    EXPECT_EQ(Recorder::Take(), Join({{"OnAppTerminateImpl()"},
                                      kUnsetSettings,
                                      {"~HookedApplication()", "mark(SOnAppTerminate)"}}));
}

TEST_F(ApplicationTrampolineTest, AsksToExitWhenMemoryRunsOut)
{
    EXPECT_NO_THROW(Application::SOnOutOfMemory());

    EXPECT_EQ(Recorder::Take(), Lines({"mark(SOnOutOfMemory)", "ui_app_exit()"}));
}

TEST_F(ApplicationTrampolineTest, RunsTheLanguageHookWhenTheClockIsSet)
{
    Application::SOnSystemTimeChanged(SYSTEM_SETTINGS_KEY_TIME_CHANGED, &mApp);

    EXPECT_EQ(Recorder::Take(),
              Lines({"mark(SOnSystemTimeChanged)", "OnAppSystemLangChangedImpl()"}));
}

TEST_F(ApplicationTrampolineTest, OnlyMarksANewTimeFormat)
{
    Application::SOnDateAndTImeFormatChanged(SYSTEM_SETTINGS_KEY_LOCALE_TIMEFORMAT_24HOUR, &mApp);

    EXPECT_EQ(Recorder::Take(), Lines({"mark(SOnDateAndTImeFormatChanged)"}));
}

class ApplicationLifecycleTest : public ToolkitTest
{
protected:
    void SetUp() override
    {
        ToolkitTest::SetUp();
        Recorder::Name(&mApp, "app");
    }

    void TearDown() override
    {
        mApp.UnRegisterPowerKeyEvent();
        ToolkitTest::TearDown();
    }

    PlainApplication mApp;
    TestListener mFirst{"first"};
    TestListener mSecond{"second"};
};

TEST_F(ApplicationLifecycleTest, WatchesThePowerKeyThenTellsOfTheResume)
{
    mApp.mAppEventListenerList = {&mSecond, nullptr, &mFirst};

    mApp.OnAppResumeImpl();

    EXPECT_EQ(Recorder::Take(),
              Lines({HandlerAdded(), "second.OnAppResume()", "first.OnAppResume()"}));
    EXPECT_EQ(Recorder::NameOf(mApp.mPowerKeyHandler), "handler1");
    EXPECT_EQ(mApp.mExtraKeyHandler, nullptr);
    EXPECT_EQ(mApp.mAppState, Application::APP_STATE_RESUMED);
}

TEST_F(ApplicationLifecycleTest, AlwaysExitsAfterAPause)
{
    mApp.mAppEventListenerList = {&mSecond, nullptr, &mFirst};
    mApp.OnAppResumeImpl();
    Recorder::Take();

    mApp.OnAppPauseImpl();

    EXPECT_EQ(Recorder::Take(), Lines({"ecore_event_handler_del(handler1)", "second.OnAppPause()",
                                       "first.OnAppPause()", "ui_app_exit()"}));
    EXPECT_EQ(mApp.mPowerKeyHandler, nullptr);
    EXPECT_EQ(mApp.mAppState, Application::APP_STATE_PAUSED);
}

TEST_F(ApplicationLifecycleTest, ExitsAfterAPauseThatNoResumeCameBefore)
{
    mApp.OnAppPauseImpl();

    EXPECT_EQ(Recorder::Take(), Lines({"ui_app_exit()"}));
    EXPECT_EQ(mApp.mAppState, Application::APP_STATE_PAUSED);
}

TEST_F(ApplicationLifecycleTest, LeavesTheEarlierHandlerBehindAfterTwoResumes)
{
    mApp.OnAppResumeImpl();
    Ecore_Event_Handler* earlier = mApp.mPowerKeyHandler;
    mApp.OnAppResumeImpl();
    EXPECT_EQ(Recorder::Take(), Lines({HandlerAdded(), HandlerAdded()}));

    mApp.OnAppPauseImpl();

    EXPECT_EQ(Recorder::Take(), Lines({"ecore_event_handler_del(handler2)", "ui_app_exit()"}));
    EXPECT_EQ(ecore_event_handler_del(earlier), &mApp);
}

TEST_F(ApplicationLifecycleTest, ResumesAgainAfterAPause)
{
    mApp.OnAppPauseImpl();
    Recorder::Take();

    mApp.OnAppResumeImpl();

    EXPECT_EQ(Recorder::Take(), Lines({HandlerAdded()}));
    EXPECT_EQ(mApp.mAppState, Application::APP_STATE_RESUMED);
}

// Notes the state that a listener finds.
class StateListener : public QivoUi::AppEventListener
{
public:
    explicit StateListener(Application& app) : mApp(app) {}

    void OnAppPause() override { Recorder::Add("paused in " + std::to_string(mApp.mAppState)); }
    void OnAppResume() override { Recorder::Add("resumed in " + std::to_string(mApp.mAppState)); }

private:
    Application& mApp;
};

TEST_F(ApplicationLifecycleTest, IsInTheNewStateWhenListenersAreTold)
{
    StateListener listener(mApp);
    mApp.RegisterAppEventListener(&listener);

    mApp.OnAppResumeImpl();
    mApp.OnAppPauseImpl();

    EXPECT_EQ(Recorder::TakeOnly({"resumed", "paused"}), Lines({"resumed in 1", "paused in 2"}));
}

// Pauses the application in its resume callback.
class PausingListener : public TestListener
{
public:
    explicit PausingListener(Application& app) : TestListener("pausing"), mApp(app) {}

    void OnAppResume() override
    {
        TestListener::OnAppResume();
        mApp.OnAppPauseImpl();
    }

private:
    Application& mApp;
};

TEST_F(ApplicationLifecycleTest, EndsAPauseWithinAResumeBeforeItGoesOn)
{
    PausingListener pausing(mApp);
    mApp.mAppEventListenerList = {&pausing, &mFirst};

    mApp.OnAppResumeImpl();

    EXPECT_EQ(Recorder::Take(),
              Lines({HandlerAdded(), "pausing.OnAppResume()", "ecore_event_handler_del(handler1)",
                     "pausing.OnAppPause()", "first.OnAppPause()", "ui_app_exit()",
                     "first.OnAppResume()"}));
    EXPECT_EQ(mApp.mAppState, Application::APP_STATE_PAUSED);
    EXPECT_EQ(mApp.mPowerKeyHandler, nullptr);
}

// A terminated application tells nobody.
TEST_F(ApplicationLifecycleTest, DestroysTheFrameOnTermination)
{
    mApp.RegisterAppEventListener(&mFirst);
    NaviFrame::GetInstance();

    mApp.OnAppTerminateImpl();

    EXPECT_EQ(Recorder::Take(), Lines({"mark(OnAppTerminateImpl)"}));
    EXPECT_EQ(NaviFrame::mInstance, nullptr);
    EXPECT_FALSE(NaviFrame::mIsAlive);
}

TEST_F(ApplicationLifecycleTest, LeavesNoFrameWhereNoneWas)
{
    mApp.OnAppTerminateImpl();

    EXPECT_EQ(Recorder::Take(), Lines({"mark(OnAppTerminateImpl)"}));
    EXPECT_EQ(NaviFrame::mInstance, nullptr);
}

TEST_F(ApplicationLifecycleTest, LeavesTheBezelToTheScreens)
{
    Application::mWindow = mWindow;

    mApp.OnSetupLayout();
    mApp.OnAppResumeImpl();
    mApp.OnAppPauseImpl();
    mApp.OnAppTerminateImpl();

    EXPECT_EQ(Recorder::TakeOnly({"eext_"}), Lines());
    EXPECT_EQ(RotaryEventManager::mPThis, nullptr);
    Application::mWindow = nullptr;
}

TEST_F(ApplicationLifecycleTest, MarksTheTerminationFirst)
{
    NaviFrame::GetInstance()->CreateNaviFrame(elm_layout_add(mWindow));
    Recorder::Take();

    mApp.OnAppTerminateImpl();

    EXPECT_EQ(Recorder::Take(),
              Lines({"mark(OnAppTerminateImpl)", "evas_object_smart_callback_del(naviframe1, "
                                                 "'transition,finished', "
                                                 "NaviFrame::SNaviFrameTransitionFinishedCB)"}));
}

} // namespace
