#ifndef WATCH_PORT_APPLICATION_LIFECYCLE_H
#define WATCH_PORT_APPLICATION_LIFECYCLE_H

#include "application/CommandLine.h"
#include "application/Display.h"
#include "application/WindowVisibility.h"
#include "application/app.h"

#include <Ecore.h>
#include <exception>

/** One run of an application: calls its callbacks in the order that app.h gives. */
class Lifecycle
{
public:
    /** @param display Outlives the object, and the toolkit. */
    Lifecycle(const ui_app_lifecycle_callback_s& callbacks, void* userData, const Display& display);
    ~Lifecycle();
    Lifecycle(const Lifecycle&) = delete;
    Lifecycle& operator=(const Lifecycle&) = delete;

    /** Runs from create to terminate with a first request; returns an app_error_e. */
    int Run(const CommandLine& request);

    /** Ends the run as soon as the callback at work has returned. */
    void RequestExit();

private:
    static Eina_Bool SExitSignalCB(void* data, int type, void* event);

    void Launch(const CommandLine& commandLine);
    void RunLoop();
    void OnLoopIdle();
    void UpdateVisibility();
    void Resume();
    void Pause();

    const ui_app_lifecycle_callback_s mCallbacks;
    void* const mUserData;
    const Display& mDisplay;
    WindowVisibility mVisibility;
    Ecore_Event_Handler* mTerminationHandler;
    Ecore_Event_Handler* mHangUpHandler;
    bool mIsInLoop = false;
    bool mIsResumed = false;
    bool mWasResumed = false;
    bool mIsExitRequested = false;
    std::exception_ptr mException;
};

#endif
