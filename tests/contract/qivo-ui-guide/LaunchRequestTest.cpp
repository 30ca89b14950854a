#include "common/NaviFrame.h"
#include "harness/Toolkit.h"
#include "qivo-ui-guide/Application.h"
#include "qivo-ui-guide/FreshProcess.h"
#include "qivo-ui-guide/application/TestApplication.h"

using QivoUi::Application;
using QivoUi::ExtraDataMap;
using QivoUi::ExtraDataMapPtr;

namespace
{

Lines Received(const std::string& operation, const Lines& keys = {})
{
    Lines lines = {"mark(SOnAppControl)", "app_control_get_operation(request)",
                   "info(SOnAppControl) operation:[" + operation + "]",
                   "app_control_foreach_extra_data(request, AppControllUtil::ForEachExtraData)"};
    for (const std::string& key : keys)
    {
        lines.push_back("app_control_get_extra_data(request, '" + key + "')");
    }
    return lines;
}

Lines Handled(const std::string& operation)
{
    return {"OnSetupLayout()", "AppControllOperationImpl('" + operation + "')"};
}

const Lines kUnreadable = {"mark(SOnAppControl)", "app_control_get_operation(request)",
                           "error(SOnAppControl) get operation fail"};

TEST(LaunchRequestTest, SetsUpTheScreenThenHandlesTheFirstRequest)
{
    RunInFreshProcess(
        []
        {
            HookedApplication app;
            const ExtraDataMap sent = {{"first", "1"}, {"second", "2"}};

            Application::SOnAppControl(Platform::MakeRequest("show", sent), &app);

            EXPECT_EQ(Recorder::Take(),
                      Join({Received("show", {"first", "second"}), Handled("show")}));
            ASSERT_NE(app.mLaunchExtraData, nullptr);
            EXPECT_EQ(*app.mLaunchExtraData, sent);
            EXPECT_EQ(app.mOperationData, app.mLaunchExtraData);
            EXPECT_EQ(app.mOperation, "");
            EXPECT_EQ(app.mOperationExtraData, nullptr);
        });
}

TEST(LaunchRequestTest, OnlyKeepsTheExtraDataOfALaterRequest)
{
    RunInFreshProcess(
        []
        {
            HookedApplication app;
            Application::SOnAppControl(Platform::MakeRequest("show", {{"first", "1"}}), &app);
            const ExtraDataMapPtr firstData = app.mLaunchExtraData;
            app.SetResumeFlag(true);
            Recorder::Take();

            Application::SOnAppControl(Platform::MakeRequest("again", {{"second", "2"}}), &app);

            EXPECT_EQ(Recorder::Take(), Received("again", {"second"}));
            ASSERT_NE(app.mLaunchExtraData, nullptr);
            EXPECT_EQ(*app.mLaunchExtraData, ExtraDataMap({{"second", "2"}}));
            EXPECT_EQ(app.mOperationData, firstData);
            EXPECT_TRUE(app.mResumeFlag);
        });
}

TEST(LaunchRequestTest, TakesTheFirstReadableRequestAfterAFailedOneForTheFirst)
{
    RunInFreshProcess(
        []
        {
            HookedApplication app;
            Recorder::Answer("app_control_get_operation", -1);

            Application::SOnAppControl(Platform::MakeRequest("lost", {{"key", "1"}}), &app);

            EXPECT_EQ(Recorder::Take(), kUnreadable);
            EXPECT_EQ(app.mLaunchExtraData, nullptr);

            Application::SOnAppControl(Platform::MakeRequest("show"), &app);

            EXPECT_EQ(Recorder::Take(), Join({Received("show"), Handled("show")}));
        });
}

TEST(LaunchRequestTest, TakesTheFirstReadableRequestAfterOneWithoutOperationForTheFirst)
{
    RunInFreshProcess(
        []
        {
            HookedApplication app;

            Application::SOnAppControl(Platform::MakeRequest(nullptr, {{"key", "1"}}), &app);

            EXPECT_EQ(Recorder::Take(), kUnreadable);
            EXPECT_EQ(app.mLaunchExtraData, nullptr);

            Application::SOnAppControl(Platform::MakeRequest("show"), &app);

            EXPECT_EQ(Recorder::Take(), Join({Received("show"), Handled("show")}));
        });
}

TEST(LaunchRequestTest, TakesAPositiveResultForAFailure)
{
    RunInFreshProcess(
        []
        {
            HookedApplication app;
            Recorder::Answer("app_control_get_operation", 1);

            Application::SOnAppControl(Platform::MakeRequest("lost"), &app);

            EXPECT_EQ(Recorder::Take(), kUnreadable);
        });
}

// The watch refuses to look into no request.
TEST(LaunchRequestTest, AsksEvenWithoutARequestForItsOperation)
{
    RunInFreshProcess(
        []
        {
            HookedApplication app;
            Recorder::Answer("app_control_get_operation", -22);

            Application::SOnAppControl(nullptr, &app);

            EXPECT_EQ(Recorder::Take(),
                      Lines({"mark(SOnAppControl)", "app_control_get_operation(null)",
                             "error(SOnAppControl) get operation fail"}));
        });
}

TEST(LaunchRequestTest, KeepsTheExtraDataWhenALaterRequestIsUnreadable)
{
    RunInFreshProcess(
        []
        {
            HookedApplication app;
            Application::SOnAppControl(Platform::MakeRequest("show", {{"key", "1"}}), &app);
            const ExtraDataMapPtr kept = app.mLaunchExtraData;

            Application::SOnAppControl(Platform::MakeRequest(nullptr, {{"key", "2"}}), &app);

            EXPECT_EQ(app.mLaunchExtraData, kept);
        });
}

TEST(LaunchRequestTest, PassesAnEmptyMapForARequestWithoutExtraData)
{
    RunInFreshProcess(
        []
        {
            HookedApplication app;

            Application::SOnAppControl(Platform::MakeRequest("show"), &app);

            ASSERT_NE(app.mOperationData, nullptr);
            EXPECT_TRUE(app.mOperationData->empty());
            EXPECT_EQ(app.mLaunchExtraData, app.mOperationData);
        });
}

TEST(LaunchRequestTest, HandlesAnEmptyOperation)
{
    RunInFreshProcess(
        []
        {
            HookedApplication app;

            Application::SOnAppControl(Platform::MakeRequest(""), &app);

            EXPECT_EQ(Recorder::Take(), Join({Received(""), Handled("")}));
        });
}

// Shows what the set-up and the operation find.
class WatchfulApplication : public HookedApplication
{
public:
    bool OnSetupLayout() override
    {
        EXPECT_TRUE(mResumeFlag);
        EXPECT_EQ(*mLaunchExtraData, ExtraDataMap({{"key", "value"}}));
        return HookedApplication::OnSetupLayout();
    }

    bool AppControllOperationImpl(std::string operation, ExtraDataMapPtr extraData) override
    {
        EXPECT_FALSE(mResumeFlag);
        return HookedApplication::AppControllOperationImpl(operation, extraData);
    }
};

TEST(LaunchRequestTest, ClearsTheResumeFlagBetweenSetUpAndOperation)
{
    RunInFreshProcess(
        []
        {
            WatchfulApplication app;
            app.SetResumeFlag(true);

            Application::SOnAppControl(Platform::MakeRequest("show", {{"key", "value"}}), &app);

            EXPECT_FALSE(app.mResumeFlag);
            EXPECT_EQ(Recorder::TakeOnly({"OnSetupLayout", "AppControll"}), Handled("show"));
        });
}

// Is addressed again while it sets up its screen.
class InterruptedApplication : public HookedApplication
{
public:
    bool OnSetupLayout() override
    {
        HookedApplication::OnSetupLayout();
        SOnAppControl(Platform::MakeRequest("between"), this);
        return true;
    }
};

TEST(LaunchRequestTest, TakesARequestDuringTheSetUpForALaterOne)
{
    RunInFreshProcess(
        []
        {
            InterruptedApplication app;

            Application::SOnAppControl(Platform::MakeRequest("show"), &app);

            EXPECT_EQ(Recorder::Take(), Join({Received("show"),
                                              {"OnSetupLayout()"},
                                              Received("between"),
                                              {"AppControllOperationImpl('show')"}}));
        });
}

TEST(LaunchRequestTest, HandlesOneRequestForTheWholeProcess)
{
    RunInFreshProcess(
        []
        {
            HookedApplication first;
            HookedApplication second;
            Application::SOnAppControl(Platform::MakeRequest("show"), &first);
            Recorder::Take();

            Application::SOnAppControl(Platform::MakeRequest("show"), &second);

            EXPECT_EQ(Recorder::Take(), Received("show"));
            EXPECT_NE(second.mLaunchExtraData, nullptr);
        });
}

// The real screen set-up with a hook of its own for the operation.
class ScreenApplication : public PlainApplication
{
public:
    bool AppControllOperationImpl(std::string /*operation*/, ExtraDataMapPtr /*extraData*/) override
    {
        Recorder::Add("AppControllOperationImpl()");
        return false;
    }
};

TEST(LaunchRequestTest, BuildsTheTreeOnce)
{
    RunInFreshProcess(
        []
        {
            StartToolkit();
            ScreenApplication app;
            Application::mWindow = Toolkit::AddWindow();

            Application::SOnAppControl(Platform::MakeRequest("show"), &app);
            Application::SOnAppControl(Platform::MakeRequest("show"), &app);

            EXPECT_EQ(Recorder::TakeOnly({"elm_bg_add", "elm_naviframe_add", "ShowView", "App"}),
                      Lines({"elm_bg_add(window1)", "elm_naviframe_add(layout1)", "ShowView()",
                             "AppControllOperationImpl()"}));
            DeleteWindow(Application::mWindow);
        });
}

TEST(LaunchRequestTest, RunsTheOperationWithoutAScreen)
{
    RunInFreshProcess(
        []
        {
            StartToolkit();
            ScreenApplication app;
            Application::mWindow = Toolkit::AddWindow();
            Recorder::Fail("elm_bg_add");

            Application::SOnAppControl(Platform::MakeRequest("show"), &app);

            EXPECT_EQ(Recorder::TakeOnly({"error", "App"}),
                      Lines({"error(OnSetupLayout) [Failed] Create BackGround",
                             "AppControllOperationImpl()"}));
            DeleteWindow(Application::mWindow);
        });
}

} // namespace
