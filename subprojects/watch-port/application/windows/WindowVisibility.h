#ifndef WATCH_PORT_APPLICATION_WINDOWS_WINDOW_VISIBILITY_H
#define WATCH_PORT_APPLICATION_WINDOWS_WINDOW_VISIBILITY_H

#include "application/windows/Display.h"
#include "application/windows/X11Stacking.h"

#include <Ecore.h>
#include <Ecore_Evas.h>
#include <Ecore_X.h>
#include <functional>
#include <optional>
#include <set>
#include <vector>

namespace WatchPort
{

/**
 * Watches whether any window of the process can be seen.
 *
 * Events are gathered, and the sum is drawn when the loop has none left: a window that is covered
 * and uncovered at once changes nothing. So a window manager's shuffling during a start is not seen
 * either, nor that it hides a window to put it into a frame: what another program hides stays in
 * sight until it is called minimised, or has not been shown again for five seconds.
 *
 * On X11 the server tells what is covered, and X11Stacking what it does not tell. On Wayland nobody
 * tells: there a window that was active is in sight until another one is active or it is minimised.
 * A window that a compositor never made active, since it was shown, is in sight once it is drawn.
 *
 * A window that the application leaves (see LeftWindows.h) is out of sight until the application
 * brings it back, it is uncovered after it was covered, or on X11 the user makes it active or
 * presses in it.
 */
class WindowVisibility
{
public:
    /**
     * @param display Outlives the object.
     * @param onLoopIdle Called at each end of a turn of the main loop, before frames are drawn.
     */
    WindowVisibility(const Display& display, std::function<void()> onLoopIdle);
    ~WindowVisibility();
    WindowVisibility(const WindowVisibility&) = delete;
    WindowVisibility& operator=(const WindowVisibility&) = delete;

    /** Returns a window that can be seen now, or null. */
    Ecore_Evas* FindVisibleWindow() const;

private:
    static Eina_Bool SLoopIdleCB(void* data);
    static Eina_Bool SVisibilityCB(void* data, int type, void* event);
    static Eina_Bool SHideCB(void* data, int type, void* event);
    static Eina_Bool SNotReturnedCB(void* data);
    static Eina_Bool SPressCB(void* data, int type, void* event);
    static Eina_Bool SDestroyCB(void* data, int type, void* event);

    void WatchX11();
    void Forget(Ecore_X_Window window);
    bool IsWanted(Ecore_X_Window id) const;
    void AwaitReturn(Ecore_X_Window window);
    void NoteReturns();
    bool IsVisible(const Ecore_Evas* window) const;
    bool CanBeSeen(const Ecore_Evas* window) const;
    bool CanBeSeenOnX11(const Ecore_Evas* window) const;

    const Display& mDisplay;
    std::function<void()> mOnLoopIdle;
    Ecore_Idle_Enterer* mIdleEnterer;
    std::vector<Ecore_Event_Handler*> mHandlers;
    std::set<Ecore_X_Window> mUncovered;
    /** Those that were uncovered once, and not hidden since. */
    std::set<Ecore_X_Window> mSeen;
    /** Those that somebody else has hidden a moment ago. */
    std::set<Ecore_X_Window> mTakenAway;
    Ecore_Timer* mTakeOverTimer = nullptr;
    /** Those that were active once, and not hidden since. */
    std::set<Ecore_X_Window> mActivated;
    Ecore_X_Window mActive = 0;
    std::optional<X11Stacking> mStacking;
};

} // namespace WatchPort

#endif
