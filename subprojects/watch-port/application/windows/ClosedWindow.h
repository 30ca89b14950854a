#ifndef WATCH_PORT_APPLICATION_WINDOWS_CLOSED_WINDOW_H
#define WATCH_PORT_APPLICATION_WINDOWS_CLOSED_WINDOW_H

#include "application/display/Display.h"

#include <Evas.h>
#include <functional>

namespace WatchPort
{

/**
 * Keeps the last window that the user closes, so that the application is terminated before its
 * window and all widgets in it are gone.
 *
 * That holds for a window that the toolkit deletes when it is closed (elm_win_autodel_set()). A
 * window without that is the application's own to close, and one beside which another window of
 * the process is open is deleted at once.
 */
class ClosedWindow
{
public:
    /**
     * @param display Outlives the object.
     * @param onClosed Called when the last window has been closed.
     */
    ClosedWindow(const Display& display, std::function<void()> onClosed);

    /** Deletes the window that was kept. */
    ~ClosedWindow();
    ClosedWindow(const ClosedWindow&) = delete;
    ClosedWindow& operator=(const ClosedWindow&) = delete;

    /** Watches the windows that are new, too. */
    void Update();

private:
    static void SDeleteRequestCB(void* data, Evas_Object* window, void* event);
    static void SDeletedCB(void* data, Evas* canvas, Evas_Object* window, void* event);

    bool IsLast(const Evas_Object* window) const;

    const Display& mDisplay;
    const std::function<void()> mOnClosed;
    Evas_Object* mKept = nullptr;
};

} // namespace WatchPort

#endif
