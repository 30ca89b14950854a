#ifndef WATCH_PORT_APPLICATION_VISIBILITY_WINDOW_VISIBILITY_H
#define WATCH_PORT_APPLICATION_VISIBILITY_WINDOW_VISIBILITY_H

#include "application/display/Display.h"
#include "application/visibility/Sight.h"

#include <Ecore.h>
#include <memory>
#include <set>

namespace WatchPort
{

/**
 * Watches whether any window of the process can be seen.
 *
 * Events only count in Update(), when the loop has none left: a window that is covered and
 * uncovered at once changes nothing, nor does a window manager that reorders windows at the start.
 *
 * A window that the application leaves (see LeftWindows.h) is out of sight until the application
 * brings it back, it is uncovered after it was covered, or the user asks for it.
 *
 * The display takes time to do what the application does with its windows. A window that it shows,
 * and those behind one that it takes away, are awaited for five seconds; an application that was in
 * sight stays in sight meanwhile.
 */
class WindowVisibility
{
public:
    /** @param display Outlives the object. */
    explicit WindowVisibility(const Display& display);
    ~WindowVisibility();
    WindowVisibility(const WindowVisibility&) = delete;
    WindowVisibility& operator=(const WindowVisibility&) = delete;

    /** Takes in what has happened. To be called at the end of each turn of the main loop. */
    void Update();

    /** Whether the application is in sight now, after Update(). */
    bool IsInSight();

    /** Returns a window that can be seen now, or null. */
    Ecore_Evas* FindVisibleWindow() const;

private:
    using Windows = std::set<const Ecore_Evas*>;

    static Eina_Bool SAwaitedLongCB(void* data);

    bool IsVisible(const Ecore_Evas* window) const;
    void Await(Windows awaited);

    const Display& mDisplay;
    const std::unique_ptr<Sight> mSight;
    /** Those that were shown and not left at the last IsInSight(); of them: */
    Windows mShown;
    Windows mVisible;
    /** Those that the display is about to show. */
    Windows mAwaited;
    Ecore_Timer* mAwaitTimer = nullptr;
    bool mIsInSight = false;
};

} // namespace WatchPort

#endif
