#ifndef WATCH_PORT_APPLICATION_VISIBILITY_X11_SIGHT_H
#define WATCH_PORT_APPLICATION_VISIBILITY_X11_SIGHT_H

#include "application/display/Display.h"
#include "application/visibility/Sight.h"
#include "application/visibility/X11Stacking.h"

#include <Ecore.h>
#include <Ecore_X.h>
#include <set>
#include <vector>

namespace WatchPort
{

/**
 * The X server reports which windows are covered, and X11Stacking finds what it does not report. A
 * window that another program hides stays in sight until it is minimised or has not been shown
 * again for five seconds: a window manager hides a window to put it into a frame.
 *
 * The user asks for a window by making it active again. A press in a window that the application
 * has left brings it back at once.
 */
class X11Sight : public Sight
{
public:
    /** @param display Outlives the object. */
    explicit X11Sight(const Display& display);
    ~X11Sight() override;

    void Update() override;
    bool CanBeSeen(const Ecore_Evas* window) const override;
    bool IsAskedFor(const Ecore_Evas* window) const override;

private:
    static Eina_Bool SVisibilityCB(void* data, int type, void* event);
    static Eina_Bool SHideCB(void* data, int type, void* event);
    static Eina_Bool SNotReturnedCB(void* data);
    static Eina_Bool SPressCB(void* data, int type, void* event);
    static Eina_Bool SDestroyCB(void* data, int type, void* event);

    void Forget(Ecore_X_Window window);
    bool IsWanted(Ecore_X_Window id) const;
    void AwaitReturn(Ecore_X_Window window);
    void NoteActivation();

    const Display& mDisplay;
    const std::vector<Ecore_Event_Handler*> mHandlers;
    X11Stacking mStacking;
    std::set<Ecore_X_Window> mUncovered;
    /** Those that were uncovered once, and not hidden since. */
    std::set<Ecore_X_Window> mSeen;
    /** Those that somebody else has hidden a moment ago. */
    std::set<Ecore_X_Window> mTakenAway;
    Ecore_Timer* mTakeOverTimer = nullptr;
    Ecore_X_Window mActive = 0;
    /** Those that were active once, and not hidden since. */
    std::set<Ecore_X_Window> mActivated;
    /** The window that the user has made active again, as of the last Update(); 0 for none. */
    Ecore_X_Window mAskedFor = 0;
};

} // namespace WatchPort

#endif
