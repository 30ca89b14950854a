#include <app.h>

#include "app-common/Installation.h"
#include "app-control/SingleInstance.h"
#include "application/CommandLine.h"
#include "application/DesktopPreferences.h"
#include "application/Exhaustion.h"
#include "application/Lifecycle.h"
#include "application/OwnId.h"
#include "application/Toolkit.h"
#include "application/display/Display.h"
#include "application/theme/PlatformTheme.h"
#include "application/theme/ThemeReload.h"
#include "application/windows/WindowMotion.h"
#include "base/ApplicationCalls.h"
#include "dlog/PortLog.h"
#include "system-settings/Settings.h"
#include "texts/TextDomain.h"
#include "texts/TextLocale.h"

#include <cstdio>
#include <optional>
#include <string>
#include <system_error>
#include <thread>

using namespace WatchPort;

namespace
{
Lifecycle* sRunning = nullptr;

constexpr char kCall[] = "ui_app_main";

// Lets ui_app_exit() find the run, and services call the application as long as it goes on, also
// when an exception ends it.
class RunningMark
{
public:
    explicit RunningMark(Lifecycle& lifecycle)
    {
        sRunning = &lifecycle;
        AllowApplicationCalls(true);
    }
    ~RunningMark()
    {
        AllowApplicationCalls(false);
        sRunning = nullptr;
    }
    RunningMark(const RunningMark&) = delete;
    RunningMark& operator=(const RunningMark&) = delete;
};

std::string ProgramName(const char* invokedAs)
{
    return std::filesystem::path(invokedAs ? invokedAs : "").filename();
}

// Ends what needs no display; returns nothing when the application is to be run.
std::optional<int> AnswerCommandLine(const CommandLine& commandLine, const std::string& program)
{
    if (!commandLine.error.empty())
    {
        std::fprintf(stderr, "%s: %s\n", program.c_str(), commandLine.error.c_str());
        return APP_ERROR_INVALID_COMMAND_LINE;
    }
    if (!commandLine.isHelpWanted)
        return std::nullopt;
    std::fputs(CommandLineUsage(program).c_str(), stdout);
    return APP_ERROR_NONE;
}

std::optional<Installation> FindOwnInstallation()
{
    const auto installation = FindInstallation(RunningExecutable());
    if (!installation)
        PORT_LOG_WARN("no folder above \"%s\" holds share/PROGRAM/ or res/: "
                      "texts are message ids, and screens without a title stay empty",
                      RunningExecutable().c_str());
    return installation;
}

// The exit status when another process runs the application or none can; nothing when this one is
// to run.
std::optional<int> AnswerInstance(const SingleInstance& instance, bool isService)
{
    switch (instance.GetStanding())
    {
    case SingleInstance::Standing::Forwarded:
        return APP_ERROR_NONE;
    case SingleInstance::Standing::NotTaken:
        return PORT_REFUSE(
            APP_ERROR_NOT_FORWARDED, kCall,
            "the application is already running, but did not take the launch request");
    case SingleInstance::Standing::Alone:
        if (isService)
            return PORT_REFUSE(APP_ERROR_NO_SESSION_BUS, kCall,
                               "--service needs an application id and a session bus");
        break;
    case SingleInstance::Standing::Owner:
        break;
    }
    return std::nullopt;
}

// The toolkit has threads of its own, and what may keep silent is asked on one, too.
std::string FindLackOfThreads()
try
{
    std::thread([] {}).join();
    return {};
}
catch (const std::system_error& error)
{
    return "cannot start a thread: " + error.code().message();
}

// Ends what has nothing to draw on; nothing when there is a display.
std::optional<int> AnswerDisplay(Display::Kind kind)
{
    if (kind == Display::Kind::Abandoned)
        return APP_ERROR_NONE;
    if (kind == Display::Kind::None)
        return PORT_REFUSE(APP_ERROR_NO_DISPLAY, kCall,
                           "no display: set DISPLAY or WAYLAND_DISPLAY to one that answers, "
                           "or ELM_ENGINE to \"buffer\"");
    return std::nullopt;
}

int Run(int argc, char** argv, const ui_app_lifecycle_callback_s& callbacks, void* userData,
        const CommandLine& commandLine)
{
    const std::string lack = FindLackOfThreads();
    if (!lack.empty())
        return PORT_REFUSE(APP_ERROR_NO_TOOLKIT, kCall, "%s", lack.c_str());
    Toolkit::Prepare();

    const auto installation = FindOwnInstallation();
    const SingleInstance instance(installation ? ReadOwnId(*installation) : "",
                                  commandLine.isService ? nullptr : &commandLine.request);
    if (const auto answer = AnswerInstance(instance, commandLine.isService))
        return *answer;

    DesktopPreferences preferences;
    const Display display;
    if (const auto answer = AnswerDisplay(display.GetKind()))
        return *answer;

    SetTextLocale();
    const Toolkit toolkit(argc, argv, display);
    if (!toolkit.IsUp())
        return PORT_REFUSE(APP_ERROR_NO_TOOLKIT, kCall, "the toolkit did not start");
    TellMotions(display);
    // The toolkit has set the character type of the environment, which may be that of C.
    SetTextLocale();
    std::optional<PlatformTheme> theme;
    if (installation)
    {
        BindTextDomain(*installation, Settings::GetInstance().ReadLocales().language);
        theme.emplace(installation->platformTheme);
    }
    preferences.Begin(display);

    if (installation && instance.Inbox())
        instance.Inbox()->OnThemeReload([&]
                                        { return ReloadThemes(display, installation->resources); });

    Lifecycle lifecycle(callbacks, userData, display, instance.Inbox());
    const RunningMark mark(lifecycle);
    return lifecycle.Run(commandLine);
}
} // namespace

int ui_app_main(int argc, char** argv, ui_app_lifecycle_callback_s* callbacks, void* user_data)
{
    if (argc < 1 || !argv || !callbacks)
        return PORT_REFUSE(APP_ERROR_INVALID_PARAMETER, kCall, "no arguments or no callbacks");
    if (sRunning)
        return PORT_REFUSE(APP_ERROR_ALREADY_RUNNING, kCall, "the application is already running");
    const CommandLine commandLine = ParseCommandLine({argv + 1, argv + argc});
    const auto answer = AnswerCommandLine(commandLine, ProgramName(argv[0]));
    return answer ? *answer : Run(argc, argv, *callbacks, user_data, commandLine);
}

void ui_app_exit(void)
{
    if (sRunning)
        sRunning->RequestExit();
    EndWhenExhausted();
}
