#include "application/Lifecycle.h"

#include "application/FirstFrame.h"
#include "application/Windows.h"
#include "dlog/dlog.h"

#include <memory>

namespace
{
using Request = std::unique_ptr<app_control_s, decltype(&app_control_destroy)>;

Request NewRequest(const CommandLine& commandLine)
{
    app_control_h handle = nullptr;
    app_control_create(&handle);
    Request request(handle, app_control_destroy);
    app_control_set_operation(handle, commandLine.operation.c_str());
    for (const auto& [key, value] : commandLine.extraData)
        app_control_add_extra_data(handle, key.c_str(), value.c_str());
    return request;
}
} // namespace

Lifecycle::Lifecycle(const ui_app_lifecycle_callback_s& callbacks, void* userData,
                     const Display& display)
    : mCallbacks(callbacks), mUserData(userData), mDisplay(display),
      mVisibility(display, [this] { OnLoopIdle(); }),
      mTerminationHandler(ecore_event_handler_add(ECORE_EVENT_SIGNAL_EXIT, SExitSignalCB, this)),
      mHangUpHandler(ecore_event_handler_add(ECORE_EVENT_SIGNAL_HUP, SExitSignalCB, this))
{
}

Lifecycle::~Lifecycle()
{
    ecore_event_handler_del(mTerminationHandler);
    ecore_event_handler_del(mHangUpHandler);
}

int Lifecycle::Run(const CommandLine& request)
{
    if (mCallbacks.create != nullptr && !mCallbacks.create(mUserData))
    {
        __dlog_print(LOG_ID_MAIN, DLOG_ERROR, "WATCH_PORT", "the application was not created");
        return APP_ERROR_NOT_CREATED;
    }
    SizeWindows(mDisplay);
    if (!mIsExitRequested)
        Launch(request);
    if (!mIsExitRequested)
        RunLoop();
    if (mIsResumed)
        Pause();
    if (mCallbacks.terminate != nullptr)
        mCallbacks.terminate(mUserData);
    return APP_ERROR_NONE;
}

void Lifecycle::RequestExit()
{
    mIsExitRequested = true;
    if (mIsInLoop)
        ecore_main_loop_quit();
}

void Lifecycle::Launch(const CommandLine& commandLine)
{
    const Request request = NewRequest(commandLine);
    if (mCallbacks.app_control != nullptr)
        mCallbacks.app_control(request.get(), mUserData);
}

void Lifecycle::RunLoop()
{
    mIsInLoop = true;
    ecore_main_loop_begin();
    mIsInLoop = false;
    mIsExitRequested = true;
    if (mException)
        std::rethrow_exception(mException);
}

// The loop is C code, which an exception must not cross.
void Lifecycle::OnLoopIdle()
try
{
    SizeWindows(mDisplay);
    if (mIsInLoop && !mIsExitRequested)
        UpdateVisibility();
}
catch (...)
{
    mException = std::current_exception();
    RequestExit();
}

void Lifecycle::UpdateVisibility()
{
    const bool isVisible = mVisibility.FindVisibleWindow() != nullptr;
    if (isVisible && !mIsResumed)
        Resume();
    else if (!isVisible && mIsResumed)
        Pause();
}

void Lifecycle::Resume()
{
    mIsResumed = true;
    if (mCallbacks.resume != nullptr)
        mCallbacks.resume(mUserData);
    Ecore_Evas* window = mWasResumed ? nullptr : mVisibility.FindVisibleWindow();
    mWasResumed = true;
    if (window != nullptr)
        ReportFrame(window, mDisplay);
}

void Lifecycle::Pause()
{
    mIsResumed = false;
    if (mCallbacks.pause != nullptr)
        mCallbacks.pause(mUserData);
}

Eina_Bool Lifecycle::SExitSignalCB(void* data, int, void*)
{
    static_cast<Lifecycle*>(data)->RequestExit();
    return ECORE_CALLBACK_PASS_ON;
}
