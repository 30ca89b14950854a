#ifndef WATCH_PORT_APPLICATION_WINDOW_VISIBILITY_H
#define WATCH_PORT_APPLICATION_WINDOW_VISIBILITY_H

#include "application/Display.h"
#include "application/X11Stacking.h"

#include <Ecore.h>
#include <Ecore_Evas.h>
#include <Ecore_X.h>
#include <functional>
#include <optional>
#include <set>
#include <vector>

/**
 * Watches whether any window of the process can be seen.
 *
 * Events are gathered, and the sum is drawn when the loop has none left: a window that is covered
 * and uncovered at once changes nothing. So a window manager's shuffling during a start is not seen
 * either.
 *
 * On X11 the server tells what is covered, and X11Stacking what it does not tell. On Wayland nobody
 * tells: there a window that was active is in sight until another one is active or it is minimised.
 * A window that a compositor never made active, since it was shown, is in sight once it is drawn;
 * one that the application lowers is minimised.
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
    static Eina_Bool SDestroyCB(void* data, int type, void* event);

    void WatchX11();
    void Forget(Ecore_X_Window window);
    bool IsVisible(const Ecore_Evas* window) const;
    bool IsVisibleOnX11(const Ecore_Evas* window) const;

    const Display& mDisplay;
    std::function<void()> mOnLoopIdle;
    Ecore_Idle_Enterer* mIdleEnterer;
    std::vector<Ecore_Event_Handler*> mHandlers;
    std::set<Ecore_X_Window> mUncovered;
    /** Those that were uncovered once, and not hidden since. */
    std::set<Ecore_X_Window> mSeen;
    std::optional<X11Stacking> mStacking;
};

#endif
