#include "harness/Toolkit.h"
#include "qivo-ui-guide/Application.h"
#include "qivo-ui-guide/FreshProcess.h"
#include "qivo-ui-guide/GuideApplication.h"
#include "qivo-ui-guide/application/TestApplication.h"
#include <new>
#include <stdexcept>

using QivoUi::Application;
using QivoUi::ExtraDataMap;
using QivoUi::GuideApplication;

extern "C" {

int __real_main(int argc, char** argv);
Application* __real__Z17CreateApplicationv();
std::new_handler __real__ZSt15set_new_handlerPFvvE(std::new_handler handler);

// The linker sends main's one call of std::set_new_handler() here.
std::new_handler __wrap__ZSt15set_new_handlerPFvvE(std::new_handler handler)
{
    const auto function = reinterpret_cast<const void*>(handler);
    Recorder::Add("set_new_handler(" + Recorder::DescribeFunction(function) + ")");
    return __real__ZSt15set_new_handlerPFvvE(handler);
}

// The linker sends the one call of CreateApplication() here. Nobody deletes the application of a
// main loop that ends without its terminate callback.
Application* __wrap__Z17CreateApplicationv()
{
    static Application* sApplication = nullptr;
    Recorder::Add("CreateApplication()");
    sApplication = __real__Z17CreateApplicationv();
    EXPECT_NE(dynamic_cast<GuideApplication*>(sApplication), nullptr);
    Recorder::Name(sApplication, "app");
    return sApplication;
}
}

namespace
{

const Lines kStart = {
    "mark(main)", "set_new_handler(Application::SOnOutOfMemory)", "CreateApplication()",
    "system_settings_set_changed_cb(16, Application::SOnSystemTimeChanged, app)",
    "system_settings_set_changed_cb(14, Application::SOnDateAndTImeFormatChanged, app)",
    "system_settings_set_changed_cb(13, Application::SOnLanguageChanged, app)",
    "system_settings_set_changed_cb(12, Application::SOnRegionChanged, app)",
    // The callbacks lie on the stack of main.
    "ui_app_main(2, arguments, ?, app)"};

int RunMain()
{
    static char sProgram[] = "qivo-guide-app";
    static char sOption[] = "--option";
    static char* sArguments[] = {sProgram, sOption, nullptr};
    Recorder::Name(sArguments, "arguments");
    return __real_main(2, sArguments);
}

TEST(MainTest, FindsNoWindow)
{
    RunInFreshProcess([] { EXPECT_EQ(Application::mWindow, nullptr); });
}

TEST(MainTest, BindsTheApplicationAndRunsIt)
{
    RunInFreshProcess(
        []
        {
            EXPECT_EQ(RunMain(), 0);

            EXPECT_EQ(Recorder::Take(), kStart);
        });
}

TEST(MainTest, GivesTheFiveLifecycleCallbacks)
{
    RunInFreshProcess(
        []
        {
            Platform::sMainLoop = [](ui_app_lifecycle_callback_s* callbacks, void*)
            {
                EXPECT_EQ(callbacks->create, Application::SOnAppCreate);
                EXPECT_EQ(callbacks->terminate, Application::SOnAppTerminate);
                EXPECT_EQ(callbacks->pause, Application::SOnAppPause);
                EXPECT_EQ(callbacks->resume, Application::SOnAppResume);
                EXPECT_EQ(callbacks->app_control, Application::SOnAppControl);
                Recorder::Add("main loop");
                return 0;
            };

            RunMain();

            EXPECT_EQ(Recorder::Take().back(), "main loop");
        });
}

TEST(MainTest, ReturnsWhatTheMainLoopReturns)
{
    for (const int result : {7, -3})
    {
        RunInFreshProcess(
            [result]
            {
                Platform::sMainLoop = [result](ui_app_lifecycle_callback_s*, void*)
                { return result; };

                EXPECT_EQ(RunMain(), result);

                EXPECT_EQ(Recorder::Take(), kStart);
            });
    }
}

TEST(MainTest, RunsWithoutTheSettings)
{
    RunInFreshProcess(
        []
        {
            for (int nth = 1; nth <= 4; ++nth)
            {
                Recorder::Answer("system_settings_set_changed_cb", -1, nth);
            }

            EXPECT_EQ(RunMain(), 0);

            EXPECT_EQ(Recorder::Take(), kStart);
        });
}

TEST(MainTest, CatchesAnIntegerFromTheMainLoop)
{
    RunInFreshProcess(
        []
        {
            Platform::sMainLoop = [](ui_app_lifecycle_callback_s*, void*) -> int { throw 5; };

            EXPECT_EQ(RunMain(), -1);

            EXPECT_EQ(Recorder::Take(), Join({kStart, {"error(main) ui_app_main launch fail"}}));
        });
}

template <typename T> void ExpectThatMainLetsThrough(T thrown)
{
    RunInFreshProcess(
        [thrown]
        {
            Platform::sMainLoop = [thrown](ui_app_lifecycle_callback_s*, void*) -> int
            { throw thrown; };

            EXPECT_THROW(RunMain(), T);

            EXPECT_EQ(Recorder::Take(), kStart);
        });
}

TEST(MainTest, LetsEveryOtherExceptionThrough)
{
    ExpectThatMainLetsThrough(std::runtime_error("broken"));
    ExpectThatMainLetsThrough(5L);
    ExpectThatMainLetsThrough(5u);
    ExpectThatMainLetsThrough('c');
}

TEST(MainTest, LeavesTheOutOfMemoryHandlerInstalled)
{
    RunInFreshProcess(
        []
        {
            RunMain();

            EXPECT_EQ(std::get_new_handler(), Application::SOnOutOfMemory);
        });
}

TEST(MainTest, LeavesTheApplicationToTheTerminateCallback)
{
    RunInFreshProcess(
        []
        {
            std::weak_ptr<ExtraDataMap> dataOfTheApplication;
            Platform::sMainLoop = [&](ui_app_lifecycle_callback_s*, void* data)
            {
                auto extraData = std::make_shared<ExtraDataMap>();
                dataOfTheApplication = extraData;
                static_cast<Application*>(data)->SetLaunchExtraData(extraData);
                return 0;
            };

            RunMain();

            EXPECT_FALSE(dataOfTheApplication.expired());
        });
}

const std::string kGuidePushed =
    "elm_naviframe_item_push(naviframe1, '', null, null, layout2, 'empty')";

// What the watch does with the guide, from its start to the back key.
int LiveOnce(ui_app_lifecycle_callback_s* callbacks, void* app)
{
    EXPECT_TRUE(callbacks->create(app));
    callbacks->app_control(Platform::MakeRequest("default"), app);
    callbacks->resume(app);
    callbacks->app_control(Platform::MakeRequest("again"), app);
    callbacks->pause(app);
    callbacks->terminate(app);
    return 0;
}

TEST(MainTest, LeadsTheGuideThroughItsLife)
{
    RunInFreshProcess(
        []
        {
            StartToolkit();
            Platform::sMainLoop = LiveOnce;

            EXPECT_EQ(RunMain(), 0);

            EXPECT_EQ(
                Recorder::TakeOnly({"mark", "info", "error", "elm_win_add",
                                    "elm_naviframe_item_push", "ui_app_exit"}),
                Lines({"mark(main)", "mark(SOnAppCreate)", "elm_win_add(null, 'qivo-guide-app', 0)",
                       "mark(SOnAppControl)", "info(SOnAppControl) operation:[default]",
                       kGuidePushed, "mark(SOnAppResume)", "mark(SOnAppControl)",
                       "info(SOnAppControl) operation:[again]", "mark(SOnAppPause)",
                       "ui_app_exit()", "mark(OnAppTerminateImpl)", "mark(SOnAppTerminate)"}));
            DeleteWindow(Application::mWindow);
        });
}

} // namespace
