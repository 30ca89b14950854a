#include "harness/Toolkit.h"
#include "qivo-ui-guide/Application.h"
#include "qivo-ui-guide/application/TestApplication.h"
#include <Ecore_Input.h>
#include <algorithm>

using QivoUi::Application;

namespace
{

const Lines kReleased = {"info(OnKeyReleasedCB) POWER KEY Released!"};

// Shows whether the release is still noted when the hook runs.
class PowerKeyApplication : public PlainApplication
{
public:
    void OnAppPausedByPowerKey() override
    {
        Recorder::Add(mIsPowerKeyReleased ? "OnAppPausedByPowerKey() released"
                                          : "OnAppPausedByPowerKey()");
    }
};

class ApplicationPowerKeyTest : public ToolkitTest
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

    // What the callback answers to the release of a key.
    Eina_Bool Release(const char* keyName)
    {
        Ecore_Event_Key key = {};
        key.keyname = keyName;
        key.key = "another";
        return Application::OnKeyReleasedCB(&mApp, ECORE_EVENT_KEY_UP, &key);
    }

    PowerKeyApplication mApp;
};

void SendRelease(const char* keyName)
{
    auto* key = static_cast<Ecore_Event_Key*>(std::calloc(1, sizeof(Ecore_Event_Key)));
    key->keyname = keyName;
    key->key = keyName;
    // A window that the toolkit does not know, so that no widget gets the key.
    key->window = key->event_window = 1;
    ecore_event_add(ECORE_EVENT_KEY_UP, key, nullptr, nullptr);
}

bool AnotherHandlerSeesARelease()
{
    bool isSeen = false;
    Ecore_Event_Handler* witness = ecore_event_handler_add(
        ECORE_EVENT_KEY_UP,
        [](void* data, int, void*) -> Eina_Bool { return *static_cast<bool*>(data) = true; },
        &isSeen);
    SendRelease("XF86PowerOff");
    const bool isHeard = Toolkit::RunUntil([&] { return isSeen; });
    ecore_event_handler_del(witness);
    return isHeard;
}

TEST_F(ApplicationPowerKeyTest, NotesAReleaseOnlyWhileResumed)
{
    // First as it is before the first resume.
    for (const int state : std::initializer_list<int>{mApp.mAppState, Application::APP_STATE_PAUSED,
                                                      Application::APP_STATE_RESUMED})
    {
        mApp.mAppState = state;

        EXPECT_EQ(Release("XF86PowerOff"), ECORE_CALLBACK_PASS_ON);

        EXPECT_EQ(Recorder::Take(), kReleased);
        EXPECT_EQ(mApp.mIsPowerKeyReleased, state == Application::APP_STATE_RESUMED);
    }
}

TEST_F(ApplicationPowerKeyTest, KeepsAnEarlierReleaseWhenPaused)
{
    mApp.mAppState = Application::APP_STATE_PAUSED;
    mApp.mIsPowerKeyReleased = true;

    Release("XF86PowerOff");

    EXPECT_TRUE(mApp.mIsPowerKeyReleased);
}

TEST_F(ApplicationPowerKeyTest, PassesEveryOtherKeyOnWithoutALine)
{
    mApp.mAppState = Application::APP_STATE_RESUMED;

    for (const char* keyName :
         {"XF86Poweroff", "xf86poweroff", "XF86PowerOff2", "XF86PowerOf", "PowerOff", "Return", ""})
    {
        EXPECT_EQ(Release(keyName), ECORE_CALLBACK_PASS_ON) << keyName;
    }

    EXPECT_EQ(Recorder::Take(), Lines());
    EXPECT_FALSE(mApp.mIsPowerKeyReleased);
}

TEST_F(ApplicationPowerKeyTest, GoesByTheNameOfTheKeyNotByItsSymbol)
{
    mApp.mAppState = Application::APP_STATE_RESUMED;
    Ecore_Event_Key key = {};
    key.keyname = "Return";
    key.key = "XF86PowerOff";

    Application::OnKeyReleasedCB(&mApp, ECORE_EVENT_KEY_UP, &key);

    EXPECT_EQ(Recorder::Take(), Lines());
    EXPECT_FALSE(mApp.mIsPowerKeyReleased);
}

TEST_F(ApplicationPowerKeyTest, CallsTheHookOnceInThePauseThatFollows)
{
    TestListener listener("listener");
    mApp.RegisterAppEventListener(&listener);
    mApp.OnAppResumeImpl();
    Release("XF86PowerOff");
    Recorder::Take();

    mApp.OnAppPauseImpl();

    EXPECT_EQ(Recorder::Take(), Lines({"ecore_event_handler_del(handler1)", "listener.OnAppPause()",
                                       "OnAppPausedByPowerKey() released", "ui_app_exit()"}));
    EXPECT_FALSE(mApp.mIsPowerKeyReleased);

    mApp.OnAppPauseImpl();

    EXPECT_EQ(Recorder::Take(), Lines({"listener.OnAppPause()", "ui_app_exit()"}));
}

TEST_F(ApplicationPowerKeyTest, HearsReleasesFromResumeToPause)
{
    mApp.OnAppResumeImpl();
    Recorder::Take();
    SendRelease("XF86PowerOff");
    ASSERT_TRUE(Toolkit::RunUntil([this] { return mApp.mIsPowerKeyReleased; }));
    EXPECT_EQ(Recorder::TakeLog(), kReleased);

    mApp.OnAppPauseImpl();
    Recorder::Take();
    EXPECT_TRUE(AnotherHandlerSeesARelease());

    EXPECT_EQ(Recorder::TakeLog(), Lines());
}

TEST_F(ApplicationPowerKeyTest, HearsNoReleaseThatAnotherHandlerPausedItOn)
{
    Ecore_Event_Handler* pausing = ecore_event_handler_add(
        ECORE_EVENT_KEY_UP,
        [](void* data, int, void*) -> Eina_Bool
        {
            static_cast<Application*>(data)->OnAppPauseImpl();
            return ECORE_CALLBACK_PASS_ON;
        },
        &mApp);
    mApp.OnAppResumeImpl();
    Recorder::Take();

    SendRelease("XF86PowerOff");

    ASSERT_TRUE(Toolkit::RunUntil([this] { return !mApp.mPowerKeyHandler; }));
    EXPECT_EQ(Recorder::Take(), Lines({"ecore_event_handler_del(handler2)", "ui_app_exit()"}));
    EXPECT_FALSE(mApp.mIsPowerKeyReleased);
    ecore_event_handler_del(pausing);
}

TEST_F(ApplicationPowerKeyTest, LetsOtherHandlersSeeTheRelease)
{
    mApp.OnAppResumeImpl();

    EXPECT_TRUE(AnotherHandlerSeesARelease());
}

TEST_F(ApplicationPowerKeyTest, RegistersTheHandlerForItself)
{
    mApp.RegisterPowerKeyEvent();

    EXPECT_EQ(Recorder::Take(),
              Lines({"ecore_event_handler_add(" + std::to_string(ECORE_EVENT_KEY_UP) +
                     ", Application::OnKeyReleasedCB, app)"}));
    EXPECT_EQ(Recorder::NameOf(mApp.mPowerKeyHandler), "handler1");
    EXPECT_EQ(mApp.mExtraKeyHandler, nullptr);
}

class ApplicationHandlersTest : public ApplicationPowerKeyTest
{
protected:
    static Ecore_Event_Handler* AddHandler(const char* name)
    {
        Ecore_Event_Handler* handler =
            ecore_event_handler_add(ECORE_EVENT_KEY_UP, Application::OnKeyReleasedCB, nullptr);
        Recorder::Take();
        Recorder::Name(handler, name);
        return handler;
    }
};

TEST_F(ApplicationHandlersTest, DeletesBothHandlersInOrder)
{
    mApp.mPowerKeyHandler = AddHandler("power");
    mApp.mExtraKeyHandler = AddHandler("extra");

    mApp.UnRegisterPowerKeyEvent();

    EXPECT_EQ(Recorder::Take(),
              Lines({"ecore_event_handler_del(power)", "ecore_event_handler_del(extra)"}));
    EXPECT_EQ(mApp.mPowerKeyHandler, nullptr);
    EXPECT_EQ(mApp.mExtraKeyHandler, nullptr);
}

TEST_F(ApplicationHandlersTest, DeletesOneOfThemAlone)
{
    for (auto handler : {&Application::mPowerKeyHandler, &Application::mExtraKeyHandler})
    {
        mApp.*handler = AddHandler("only");

        mApp.UnRegisterPowerKeyEvent();

        EXPECT_EQ(Recorder::Take(), Lines({"ecore_event_handler_del(only)"}));
        EXPECT_EQ(mApp.*handler, nullptr);
    }
}

TEST_F(ApplicationHandlersTest, DeletesNothingWhereNothingIsRegistered)
{
    mApp.UnRegisterPowerKeyEvent();

    EXPECT_EQ(Recorder::Take(), Lines());
}

} // namespace
