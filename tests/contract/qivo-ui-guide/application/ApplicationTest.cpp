#include "qivo-ui-guide/Application.h"

#include "common/NaviFrame.h"
#include "harness/Toolkit.h"
#include "qivo-ui-guide/application/TestApplication.h"
#include <cstring>
#include <memory>
#include <new>

using QivoUi::AppEventListener;
using QivoUi::Application;
using QivoUi::ExtraDataMap;
using QivoUi::NaviFrame;

namespace
{

using ListenerList = std::list<AppEventListener*>;

class ApplicationTest : public testing::Test
{
protected:
    void SetUp() override
    {
        Recorder::Reset();
        Platform::Reset();
    }

    TestListener mFirst{"first"};
    TestListener mSecond{"second"};
    TestListener mThird{"third"};
};

// Memory that is not zero before shows which fields the constructor sets itself.
TEST_F(ApplicationTest, StartsWithEveryFieldEmpty)
{
    alignas(PlainApplication) unsigned char memory[sizeof(PlainApplication)];
    std::memset(memory, 0xa5, sizeof(memory));
    auto* app = new (memory) PlainApplication();

    EXPECT_FALSE(app->mResumeFlag);
    EXPECT_EQ(app->mLaunchExtraData, nullptr);
    EXPECT_EQ(app->mOperation, "");
    EXPECT_EQ(app->mOperationExtraData, nullptr);
    EXPECT_TRUE(app->mAppEventListenerList.empty());
    EXPECT_EQ(app->mAppState, Application::APP_STATE_NONE);
    EXPECT_EQ(app->mPowerKeyHandler, nullptr);
    EXPECT_EQ(app->mExtraKeyHandler, nullptr);
    EXPECT_FALSE(app->mIsPowerKeyReleased);
    EXPECT_EQ(app->mMainLayout, nullptr);
    EXPECT_EQ(app->mBackGround, nullptr);
    EXPECT_EQ(app->mAppConformant, nullptr);
    EXPECT_EQ(app->mColorTable, nullptr);
    EXPECT_EQ(app->mFontTable, nullptr);
    app->~PlainApplication();
}

TEST_F(ApplicationTest, NumbersItsStates)
{
    EXPECT_EQ(Application::APP_STATE_NONE, 0);
    EXPECT_EQ(Application::APP_STATE_RESUMED, 1);
    EXPECT_EQ(Application::APP_STATE_PAUSED, 2);
}

TEST_F(ApplicationTest, ForgetsTheWindowOnEachConstruction)
{
    int window = 0;
    Application::mWindow = reinterpret_cast<Evas_Object*>(&window);

    const PlainApplication app;

    EXPECT_EQ(Application::mWindow, nullptr);
}

TEST_F(ApplicationTest, CallsNothingOnConstruction)
{
    const PlainApplication app;

    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(ApplicationTest, ReleasesItsExtraDataWhenItDies)
{
    std::weak_ptr<ExtraDataMap> launchData;
    std::weak_ptr<ExtraDataMap> operationData;
    {
        PlainApplication app;
        app.mLaunchExtraData = std::make_shared<ExtraDataMap>();
        app.mOperationExtraData = std::make_shared<ExtraDataMap>();
        launchData = app.mLaunchExtraData;
        operationData = app.mOperationExtraData;
    }

    EXPECT_TRUE(launchData.expired());
    EXPECT_TRUE(operationData.expired());
}

TEST_F(ApplicationTest, LeavesWindowHandlersTablesAndFrameWhenItDies)
{
    int handle = 0;
    NaviFrame* frame = NaviFrame::GetInstance();
    {
        PlainApplication app;
        Application::mWindow = reinterpret_cast<Evas_Object*>(&handle);
        app.mPowerKeyHandler = reinterpret_cast<Ecore_Event_Handler*>(&handle);
        app.mExtraKeyHandler = reinterpret_cast<Ecore_Event_Handler*>(&handle);
        app.RegisterAppEventListener(&mFirst);
        app.RegisterAppEventListener(frame);
    }

    EXPECT_EQ(Recorder::Take(), Lines());
    EXPECT_EQ(NaviFrame::mInstance, frame);
    EXPECT_EQ(Application::mWindow, reinterpret_cast<Evas_Object*>(&handle));
    Application::mWindow = nullptr;
    NaviFrame::Destroy();
}

TEST_F(ApplicationTest, DestroysADerivedApplicationThroughTheBase)
{
    std::unique_ptr<Application> app = std::make_unique<HookedApplication>();

    app.reset();

    EXPECT_EQ(Recorder::Take(), Lines({"~HookedApplication()"}));
}

TEST_F(ApplicationTest, HoldsListenersInTheOrderOfTheirRegistration)
{
    PlainApplication app;

    app.RegisterAppEventListener(&mFirst);
    app.RegisterAppEventListener(&mSecond);
    app.RegisterAppEventListener(&mThird);

    EXPECT_EQ(app.mAppEventListenerList, ListenerList({&mFirst, &mSecond, &mThird}));
}

TEST_F(ApplicationTest, HoldsAListenerOnceAndMovesItToTheEnd)
{
    PlainApplication app;
    app.RegisterAppEventListener(&mFirst);
    app.RegisterAppEventListener(&mSecond);

    app.RegisterAppEventListener(&mFirst);

    EXPECT_EQ(app.mAppEventListenerList, ListenerList({&mSecond, &mFirst}));
}

TEST_F(ApplicationTest, RemovesEveryEntryOfAListenerOnRegistration)
{
    PlainApplication app;
    app.mAppEventListenerList = {&mFirst, &mSecond, &mFirst};

    app.RegisterAppEventListener(&mFirst);

    EXPECT_EQ(app.mAppEventListenerList, ListenerList({&mSecond, &mFirst}));
}

TEST_F(ApplicationTest, IgnoresTheRegistrationOfNull)
{
    PlainApplication app;
    app.mAppEventListenerList = {nullptr, &mFirst};

    app.RegisterAppEventListener(nullptr);

    EXPECT_EQ(app.mAppEventListenerList, ListenerList({nullptr, &mFirst}));
}

TEST_F(ApplicationTest, RemovesEveryEntryOfAnUnregisteredListener)
{
    PlainApplication app;
    app.mAppEventListenerList = {&mFirst, &mSecond, &mFirst, &mThird};

    app.UnRegisterAppEventListener(&mFirst);

    EXPECT_EQ(app.mAppEventListenerList, ListenerList({&mSecond, &mThird}));
}

TEST_F(ApplicationTest, IgnoresTheUnregistrationOfNullAndOfStrangers)
{
    PlainApplication app;
    app.mAppEventListenerList = {nullptr, &mFirst};

    app.UnRegisterAppEventListener(nullptr);
    app.UnRegisterAppEventListener(&mSecond);

    EXPECT_EQ(app.mAppEventListenerList, ListenerList({nullptr, &mFirst}));
}

TEST_F(ApplicationTest, TellsAPauseToEachListenerAndSkipsNull)
{
    PlainApplication app;
    app.mAppEventListenerList = {&mSecond, nullptr, &mFirst};

    app.NotifyAppPaused();

    EXPECT_EQ(Recorder::Take(), Lines({"second.OnAppPause()", "first.OnAppPause()"}));
}

TEST_F(ApplicationTest, TellsAResumeToEachListenerAndSkipsNull)
{
    PlainApplication app;
    app.mAppEventListenerList = {&mSecond, nullptr, &mFirst};

    app.NotifyAppResumed();

    EXPECT_EQ(Recorder::Take(), Lines({"second.OnAppResume()", "first.OnAppResume()"}));
}

TEST_F(ApplicationTest, TellsTheTerminationToEachListenerAndSkipsNull)
{
    PlainApplication app;
    app.mAppEventListenerList = {&mSecond, nullptr, &mFirst};

    app.NotifyAppTerminate();

    EXPECT_EQ(Recorder::Take(), Lines({"second.OnAppTerminate()", "first.OnAppTerminate()"}));
}

TEST_F(ApplicationTest, TellsTheSystemLanguageToEachListenerAndSkipsNull)
{
    PlainApplication app;
    app.mAppEventListenerList = {&mSecond, nullptr, &mFirst};

    app.NotifySystemLangChanged();

    EXPECT_EQ(Recorder::Take(),
              Lines({"second.OnSystemLangChanged()", "first.OnSystemLangChanged()"}));
}

TEST_F(ApplicationTest, TellsALanguageChangeToItsOwnHookOnly)
{
    {
        HookedApplication app;
        app.RegisterAppEventListener(&mFirst);
        app.NotifyLanguageChanged();
        EXPECT_EQ(Recorder::Take(), Lines({"OnAppSystemLangChangedImpl()"}));
    }
}

// Unregisters a listener (itself if none is given) in its pause callback.
class LeavingListener : public TestListener
{
public:
    LeavingListener(Application& app, AppEventListener* leaver)
        : TestListener("leaving"), mApp(app), mLeaver(leaver ? leaver : this)
    {
    }

    void OnAppPause() override
    {
        TestListener::OnAppPause();
        mApp.UnRegisterAppEventListener(mLeaver);
    }

private:
    Application& mApp;
    AppEventListener* mLeaver;
};

TEST_F(ApplicationTest, GoesOnWhenAListenerUnregistersItself)
{
    PlainApplication app;
    LeavingListener leaving(app, nullptr);
    app.mAppEventListenerList = {&mFirst, &leaving, &mSecond};

    app.NotifyAppPaused();

    EXPECT_EQ(Recorder::Take(),
              Lines({"first.OnAppPause()", "leaving.OnAppPause()", "second.OnAppPause()"}));
    EXPECT_EQ(app.mAppEventListenerList, ListenerList({&mFirst, &mSecond}));
}

TEST_F(ApplicationTest, DoesNotTellAListenerThatAnotherOneUnregistered)
{
    PlainApplication app;
    LeavingListener leaving(app, &mFirst);
    app.mAppEventListenerList = {&leaving, &mFirst, &mSecond};

    app.NotifyAppPaused();

    EXPECT_EQ(Recorder::Take(), Lines({"leaving.OnAppPause()", "second.OnAppPause()"}));
}

// Unregisters itself in its pause callback, and dies.
class DyingListener : public TestListener
{
public:
    explicit DyingListener(Application& app) : TestListener("dying"), mApp(app) {}

    void OnAppPause() override
    {
        TestListener::OnAppPause();
        mApp.UnRegisterAppEventListener(this);
        delete this;
    }

private:
    Application& mApp;
};

TEST_F(ApplicationTest, GoesOnWhenAListenerDies)
{
    PlainApplication app;
    app.mAppEventListenerList = {&mFirst, new DyingListener(app), &mSecond};

    app.NotifyAppPaused();
    app.NotifyAppPaused();

    EXPECT_EQ(Recorder::Take(),
              Lines({"first.OnAppPause()", "dying.OnAppPause()", "second.OnAppPause()",
                     "first.OnAppPause()", "second.OnAppPause()"}));
}

// Registers a listener (itself if none is given) in its pause callback.
class InvitingListener : public TestListener
{
public:
    InvitingListener(Application& app, AppEventListener* guest)
        : TestListener("inviting"), mApp(app), mGuest(guest ? guest : this)
    {
    }

    void OnAppPause() override
    {
        TestListener::OnAppPause();
        mApp.RegisterAppEventListener(mGuest);
    }

private:
    Application& mApp;
    AppEventListener* mGuest;
};

TEST_F(ApplicationTest, TellsAListenerThatAnotherOneRegisteredOfTheNextEvent)
{
    PlainApplication app;
    InvitingListener inviting(app, &mFirst);
    app.mAppEventListenerList = {&inviting, &mSecond};

    app.NotifyAppPaused();
    app.NotifyAppResumed();

    EXPECT_EQ(Recorder::Take(),
              Lines({"inviting.OnAppPause()", "second.OnAppPause()", "inviting.OnAppResume()",
                     "second.OnAppResume()", "first.OnAppResume()"}));
}

TEST_F(ApplicationTest, TellsAListenerThatRegistersItselfAgainOnlyOnce)
{
    PlainApplication app;
    InvitingListener inviting(app, nullptr);
    app.mAppEventListenerList = {&inviting, &mSecond};

    app.NotifyAppPaused();

    EXPECT_EQ(Recorder::Take(), Lines({"inviting.OnAppPause()", "second.OnAppPause()"}));
    EXPECT_EQ(app.mAppEventListenerList, ListenerList({&mSecond, &inviting}));
}

TEST_F(ApplicationTest, DoesNothingInTheHooksThatDerivedApplicationsMayFill)
{
    PlainApplication app;
    app.RegisterAppEventListener(&mFirst);

    app.OnAppSystemLangChangedImpl();
    app.OnAppPausedByPowerKey();

    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(ApplicationTest, HandlesNoOperationByItself)
{
    PlainApplication app;

    EXPECT_FALSE(app.AppControllOperationImpl("operation", std::make_shared<ExtraDataMap>()));
    EXPECT_FALSE(app.OnVocraOperation(std::make_shared<ExtraDataMap>()));
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST(AppEventListenerTest, HearsEverythingAndDoesNothing)
{
    Recorder::Reset();
    AppEventListener listener;

    listener.OnAppCreate();
    listener.OnAppTerminate();
    listener.OnAppPause();
    listener.OnAppResume();
    listener.OnSystemLangChanged();

    EXPECT_EQ(Recorder::Take(), Lines());
}

} // namespace
