#include "application/visibility/X11Stacking.h"

#include "base/FreeDeleter.h"

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <string>

namespace WatchPort
{

namespace
{
constexpr unsigned int kAllWorkspaces = 0xFFFFFFFF;

int ScreenNumber()
{
    return ecore_x_screen_index_get(ecore_x_default_screen_get());
}

Ecore_X_Atom CompositorSelection()
{
    return ecore_x_atom_get(("_NET_WM_CM_S" + std::to_string(ScreenNumber())).c_str());
}

bool ReadWindowList(Ecore_X_Window root, std::vector<Ecore_X_Window>& windows)
{
    Ecore_X_Window* list = nullptr;
    const int count =
        ecore_x_window_prop_window_list_get(root, ECORE_X_ATOM_NET_CLIENT_LIST_STACKING, &list);
    const std::unique_ptr<Ecore_X_Window, FreeDeleter> owner(list);
    if (count > 0)
        windows.assign(list, list + count);
    return count >= 0;
}

bool IsMinimised(Ecore_X_Window window)
{
    Ecore_X_Window_State* list = nullptr;
    unsigned int count = 0;
    ecore_x_netwm_window_state_get(window, &list, &count);
    const std::unique_ptr<Ecore_X_Window_State, FreeDeleter> owner(list);
    return std::find(list, list + count, ECORE_X_WINDOW_STATE_HIDDEN) != list + count ||
           ecore_x_icccm_state_get(window) == ECORE_X_WINDOW_STATE_HINT_ICONIC;
}

bool IsOnWorkspace(Ecore_X_Window window, Ecore_X_Window root)
{
    unsigned int present = 0;
    unsigned int own = 0;
    return ecore_x_window_prop_card32_get(root, ECORE_X_ATOM_NET_CURRENT_DESKTOP, &present, 1) !=
               1 ||
           !ecore_x_netwm_desktop_get(window, &own) || own == kAllWorkspaces || own == present;
}

bool IsPartOfDesktop(Ecore_X_Window window)
{
    Ecore_X_Window_Type type = ECORE_X_WINDOW_TYPE_NORMAL;
    ecore_x_netwm_window_type_get(window, &type);
    return type == ECORE_X_WINDOW_TYPE_DESKTOP || type == ECORE_X_WINDOW_TYPE_DOCK;
}

bool Contains(const std::vector<Ecore_X_Window>& windows, Ecore_X_Window window)
{
    return std::find(windows.begin(), windows.end(), window) != windows.end();
}
} // namespace

X11Stacking::X11Stacking()
    : mRoot(ecore_x_window_root_first_get()), mCompositorSelection(CompositorSelection()),
      mHandlers{ecore_event_handler_add(ECORE_X_EVENT_WINDOW_PROPERTY, SPropertyCB, this),
                ecore_event_handler_add(ECORE_X_EVENT_FIXES_SELECTION_NOTIFY, SSelectionCB, this)}
{
    ecore_x_event_mask_set(mRoot, ECORE_X_EVENT_MASK_WINDOW_PROPERTY);
    ecore_x_fixes_selection_notification_request(mCompositorSelection);
    mIsComposited = ecore_x_screen_is_composited(ScreenNumber());
}

X11Stacking::~X11Stacking()
{
    for (Ecore_Event_Handler* handler : mHandlers)
        ecore_event_handler_del(handler);
}

void X11Stacking::Update()
{
    if (!mIsOutdated)
        return;
    mIsOutdated = false;
    if (ecore_x_window_prop_window_get(mRoot, ECORE_X_ATOM_NET_ACTIVE_WINDOW, &mActive, 1) != 1)
        mActive = 0;
    ReadWindows();
}

void X11Stacking::ReadWindows()
{
    std::vector<Ecore_X_Window> listed;
    mIsListing = ReadWindowList(mRoot, listed);
    mMinimised.clear();
    std::vector<Ecore_X_Window> stack;
    for (const Ecore_X_Window window : listed)
    {
        if (mListed.count(window) == 0)
            ecore_x_event_mask_set(window, ECORE_X_EVENT_MASK_WINDOW_PROPERTY);
        if (IsMinimised(window))
            mMinimised.insert(window);
        else if (IsOnWorkspace(window, mRoot) && !IsPartOfDesktop(window))
            stack.push_back(window);
    }
    mListed = {listed.begin(), listed.end()};
    mLowered = IsLowered(stack) ? stack.front() : 0;
    mStack = std::move(stack);
}

bool X11Stacking::IsLowered(const std::vector<Ecore_X_Window>& stack) const
{
    if (stack.size() < 2)
        return false;
    const Ecore_X_Window lowest = stack.front();
    const auto former = std::find(mStack.begin(), mStack.end(), lowest);
    return lowest == mLowered ||
           (former != mStack.end() &&
            std::any_of(mStack.begin(), former,
                        [&](Ecore_X_Window other) { return Contains(stack, other); }));
}

bool X11Stacking::IsOutOfSight(Ecore_X_Window window) const
{
    if (mMinimised.count(window) != 0)
        return true;
    if (!mIsComposited || !mIsListing)
        return false;
    const auto place = std::find(mStack.begin(), mStack.end(), window);
    return place == mStack.end() || window == mLowered ||
           std::find(place + 1, mStack.end(), mActive) != mStack.end();
}

Eina_Bool X11Stacking::SPropertyCB(void* data, int, void* event)
{
    const Ecore_X_Atom changed = static_cast<Ecore_X_Event_Window_Property*>(event)->atom;
    for (const Ecore_X_Atom read :
         {ECORE_X_ATOM_NET_CLIENT_LIST_STACKING, ECORE_X_ATOM_NET_ACTIVE_WINDOW,
          ECORE_X_ATOM_NET_CURRENT_DESKTOP, ECORE_X_ATOM_NET_WM_DESKTOP, ECORE_X_ATOM_NET_WM_STATE,
          ECORE_X_ATOM_WM_STATE})
    {
        if (changed == read)
            static_cast<X11Stacking*>(data)->mIsOutdated = true;
    }
    return ECORE_CALLBACK_PASS_ON;
}

// What the event says, not what is so by now: its place among the reports of the server counts.
Eina_Bool X11Stacking::SSelectionCB(void* data, int, void* event)
{
    const auto* change = static_cast<Ecore_X_Event_Fixes_Selection_Notify*>(event);
    auto* stacking = static_cast<X11Stacking*>(data);
    if (change->atom != stacking->mCompositorSelection)
        return ECORE_CALLBACK_PASS_ON;
    stacking->mIsComposited = change->owner != 0;
    // The toolkit takes every such event for one of its own windows, and complains.
    return ECORE_CALLBACK_DONE;
}

} // namespace WatchPort
