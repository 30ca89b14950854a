#include "application/Lifecycle.h"

#include "application/windows/FirstFrame.h"
#include "application/windows/Windows.h"
#include "dlog/PortLog.h"

#include <utility>

namespace WatchPort
{

namespace
{
// As long as the desktop's own services wait that were started and then not called.
constexpr double kServiceSeconds = 10;
} // namespace

Lifecycle::Lifecycle(const ui_app_lifecycle_callback_s& callbacks, void* userData,
                     const Display& display, LaunchInbox* inbox)
    : mCallbacks(callbacks), mUserData(userData), mDisplay(display), mInbox(inbox),
      mVisibility(display), mClosedWindow(display, [this] { RequestExit(); }),
      mIdleEnterer(ecore_idle_enterer_before_add(SLoopIdleCB, this)),
      mTerminationHandler(ecore_event_handler_add(ECORE_EVENT_SIGNAL_EXIT, SExitSignalCB, this)),
      mHangUpHandler(ecore_event_handler_add(ECORE_EVENT_SIGNAL_HUP, SExitSignalCB, this))
{
}

Lifecycle::~Lifecycle()
{
    ecore_event_handler_del(mTerminationHandler);
    ecore_event_handler_del(mHangUpHandler);
    ecore_idle_enterer_del(mIdleEnterer);
}

int Lifecycle::Run(const CommandLine& commandLine)
{
    if (commandLine.isService && !AwaitRequest())
        return APP_ERROR_NONE;
    if (mCallbacks.create && !mCallbacks.create(mUserData))
    {
        PORT_LOG_ERROR("the application was not created");
        return APP_ERROR_NOT_CREATED;
    }
    mIsCreated = true;
    SizeWindows(mDisplay);
    mDisplay.Flush();
    if (!mIsExitRequested)
        DeliverFirst(commandLine);
    if (!mIsExitRequested)
        RunLoop();
    if (mIsResumed)
        Pause();
    if (mCallbacks.terminate)
        mCallbacks.terminate(mUserData);
    return APP_ERROR_NONE;
}

void Lifecycle::RequestExit()
{
    mIsExitRequested = true;
    mReserve.Spend();
    if (mIsInLoop)
        ecore_main_loop_quit();
}

bool Lifecycle::AwaitRequest()
{
    Ecore_Timer* timer = ecore_timer_add(kServiceSeconds, SIdleTooLongCB, nullptr);
    mIsInLoop = true;
    ecore_main_loop_begin();
    mIsInLoop = false;
    ecore_timer_del(timer);
    return !mIsExitRequested && !mInbox->IsEmpty();
}

void Lifecycle::DeliverFirst(const CommandLine& commandLine)
{
    if (commandLine.isService)
    {
        mInbox->HandOver([this](app_control_h request) { Deliver(request); });
        return;
    }
    LaunchRequest request = commandLine.request;
    Deliver(&request);
}

void Lifecycle::DeliverArrived()
{
    if (!mInbox)
        return;
    // Before the callbacks, which may have their own idea of what is to be seen.
    if (!mIsExitRequested && !mInbox->IsEmpty())
        PresentWindow(mDisplay);
    while (!mIsExitRequested && !mInbox->IsEmpty())
        mInbox->HandOver([this](app_control_h request) { Deliver(request); });
    mInbox->ReleaseWaiting();
}

void Lifecycle::Deliver(app_control_h request)
{
    if (mCallbacks.app_control)
        mCallbacks.app_control(request, mUserData);
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
    mVisibility.Update();
    if (!mIsInLoop)
        return;
    if (!mIsCreated)
    {
        if (!mInbox->IsEmpty())
            ecore_main_loop_quit();
        return;
    }
    DeliverArrived();
    SizeWindows(mDisplay);
    mClosedWindow.Update();
    if (!mIsExitRequested)
        ResumeOrPause();
}
catch (...)
{
    mException = std::current_exception();
    RequestExit();
}

void Lifecycle::ResumeOrPause()
{
    const bool isInSight = mVisibility.IsInSight();
    if (isInSight && !mIsResumed)
        Resume();
    else if (!isInSight && mIsResumed)
        Pause();
}

void Lifecycle::Resume()
{
    mIsResumed = true;
    if (mCallbacks.resume)
        mCallbacks.resume(mUserData);
    if (std::exchange(mWasResumed, true))
        return;
    Ecore_Evas* window = mVisibility.FindVisibleWindow();
    if (window)
        ReportFrame(window, mDisplay);
    mAccessibility.FollowAfterFrame(window);
}

void Lifecycle::Pause()
{
    mIsResumed = false;
    if (mCallbacks.pause)
        mCallbacks.pause(mUserData);
}

Eina_Bool Lifecycle::SLoopIdleCB(void* data)
{
    static_cast<Lifecycle*>(data)->OnLoopIdle();
    return ECORE_CALLBACK_RENEW;
}

Eina_Bool Lifecycle::SExitSignalCB(void* data, int, void*)
{
    static_cast<Lifecycle*>(data)->RequestExit();
    return ECORE_CALLBACK_PASS_ON;
}

Eina_Bool Lifecycle::SIdleTooLongCB(void*)
{
    ecore_main_loop_quit();
    return ECORE_CALLBACK_RENEW;
}

} // namespace WatchPort
