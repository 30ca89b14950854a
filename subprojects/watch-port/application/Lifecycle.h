#ifndef WATCH_PORT_APPLICATION_LIFECYCLE_H
#define WATCH_PORT_APPLICATION_LIFECYCLE_H

#include "app-control/LaunchInbox.h"
#include "application/CommandLine.h"
#include "application/Exhaustion.h"
#include "application/access/Accessibility.h"
#include "application/display/Display.h"
#include "application/visibility/WindowVisibility.h"
#include "application/windows/ClosedWindow.h"
#include <app.h>

#include <Ecore.h>
#include <exception>

namespace WatchPort
{

/** One run of an application: calls its callbacks in the order that app.h gives. */
class Lifecycle
{
public:
    /**
     * @param display Outlives the object, and the toolkit.
     * @param inbox Where launch requests arrive, which outlives the object; null: nowhere.
     */
    Lifecycle(const ui_app_lifecycle_callback_s& callbacks, void* userData, const Display& display,
              LaunchInbox* inbox);
    ~Lifecycle();
    Lifecycle(const Lifecycle&) = delete;
    Lifecycle& operator=(const Lifecycle&) = delete;

    /**
     * Runs from create to terminate; returns an app_error_e. The first request is that of the
     * command line; as a service, the first to arrive, and none of the callbacks is called before.
     */
    int Run(const CommandLine& commandLine);

    /** Ends the run as soon as the callback at work has returned. */
    void RequestExit();

private:
    static Eina_Bool SLoopIdleCB(void* data);
    static Eina_Bool SExitSignalCB(void* data, int type, void* event);
    static Eina_Bool SIdleTooLongCB(void* data);

    bool AwaitRequest();
    void DeliverFirst(const CommandLine& commandLine);
    void DeliverArrived();
    void Deliver(app_control_h request);
    void RunLoop();
    void OnLoopIdle();
    void ResumeOrPause();
    void Resume();
    void Pause();

    const ui_app_lifecycle_callback_s mCallbacks;
    void* const mUserData;
    const Display& mDisplay;
    LaunchInbox* const mInbox;
    WindowVisibility mVisibility;
    ClosedWindow mClosedWindow;
    Accessibility mAccessibility{mDisplay};
    /** Called at each end of a turn of the main loop, before frames are drawn. */
    Ecore_Idle_Enterer* mIdleEnterer;
    Ecore_Event_Handler* mTerminationHandler;
    Ecore_Event_Handler* mHangUpHandler;
    bool mIsInLoop = false;
    bool mIsCreated = false;
    bool mIsResumed = false;
    bool mWasResumed = false;
    bool mIsExitRequested = false;
    std::exception_ptr mException;
    MemoryReserve mReserve;
};

} // namespace WatchPort

#endif
