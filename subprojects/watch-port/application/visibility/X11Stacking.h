#ifndef WATCH_PORT_APPLICATION_VISIBILITY_X11_STACKING_H
#define WATCH_PORT_APPLICATION_VISIBILITY_X11_STACKING_H

#include <Ecore.h>
#include <Ecore_X.h>
#include <set>
#include <vector>

namespace WatchPort
{

/**
 * Tells from the window manager's properties which windows are out of sight.
 *
 * Under a compositing manager the server draws every window whole and never reports one as covered.
 * There a window counts as covered when the active window lies above it, and when it was lowered to
 * the bottom below a window that it had been above of. Panels, the desktop's background, minimised
 * windows and those of other workspaces cover nothing.
 */
class X11Stacking
{
public:
    X11Stacking();
    ~X11Stacking();
    X11Stacking(const X11Stacking&) = delete;
    X11Stacking& operator=(const X11Stacking&) = delete;

    /** Whether a compositing manager draws the windows: the server's reports mean nothing then. */
    bool IsComposited() const { return mIsComposited; }

    /** The active window, as of the last Update(); 0 without one. */
    Ecore_X_Window GetActive() const { return mActive; }

    /** Reads the properties if any has changed. */
    void Update();

    /**
     * Whether a window is minimised or, under a compositing manager, covered, on another workspace
     * or not managed yet. As of the last Update().
     */
    bool IsOutOfSight(Ecore_X_Window window) const;

private:
    static Eina_Bool SPropertyCB(void* data, int type, void* event);
    static Eina_Bool SSelectionCB(void* data, int type, void* event);

    void ReadWindows();
    bool IsLowered(const std::vector<Ecore_X_Window>& stack) const;

    const Ecore_X_Window mRoot;
    const Ecore_X_Atom mCompositorSelection;
    std::vector<Ecore_Event_Handler*> mHandlers;
    bool mIsOutdated = true;
    bool mIsComposited = false;
    /** Whether the window manager lists its windows at all. */
    bool mIsListing = false;
    std::set<Ecore_X_Window> mListed;
    std::set<Ecore_X_Window> mMinimised;
    /** The windows that can cover one another, the lowest first. */
    std::vector<Ecore_X_Window> mStack;
    Ecore_X_Window mActive = 0;
    /** The lowest window, while it is there because it was lowered; otherwise 0. */
    Ecore_X_Window mLowered = 0;
};

} // namespace WatchPort

#endif
