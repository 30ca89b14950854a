#include "application/WindowVisibility.h"

#include "application/Windows.h"

#include <Elementary.h>

namespace
{
// Set on a window once a frame of it has been drawn.
constexpr char kDrawn[] = "watch-port-drawn";
// Set on a window whose first frame is waited for.
constexpr char kAwaited[] = "watch-port-awaited";
// Set on a window once it has been active since it was shown.
constexpr char kActivated[] = "watch-port-activated";
// Set on a window that was hidden while active, until it is not active.
constexpr char kHiddenActive[] = "watch-port-hidden-active";

void SNothingJob(void*)
{
}

void SDrawnCB(void* data, Evas* canvas, void*)
{
    auto* window = static_cast<Ecore_Evas*>(data);
    evas_event_callback_del(canvas, EVAS_CALLBACK_RENDER_POST, SDrawnCB);
    ecore_evas_data_set(window, kDrawn, window);
    // Another turn of the loop, which otherwise has nothing to do: the window is seen in it.
    ecore_job_add(SNothingJob, nullptr);
}

// The toolkit leaves the canvas of an engine without windows visible whatever becomes of the
// window's object, which it keeps under this name.
bool IsShown(const Ecore_Evas* window)
{
    const auto* object = static_cast<Evas_Object*>(ecore_evas_data_get(window, "elm_win"));
    return ecore_evas_visibility_get(window) != 0 && !ecore_evas_iconified_get(window) &&
           (object == nullptr || evas_object_visible_get(object));
}

bool IsDeactivated(const Ecore_Evas* window)
{
    return ecore_evas_data_get(window, kActivated) != nullptr && !ecore_evas_focus_get(window);
}

void NoteActivation(Ecore_Evas* window)
{
    const bool isActive = ecore_evas_focus_get(window);
    const bool isHidden = !IsShown(window) && !ecore_evas_iconified_get(window);
    // A window that is hidden stays active until the compositor's answer, which may come late.
    if (isHidden || !isActive)
        ecore_evas_data_set(window, kHiddenActive, isActive ? window : nullptr);
    if (isHidden)
        ecore_evas_data_set(window, kActivated, nullptr);
    else if (isActive && ecore_evas_data_get(window, kHiddenActive) == nullptr)
        ecore_evas_data_set(window, kActivated, window);
}

// No client of Wayland can lower its window; what it can do to leave is to minimise it.
Eina_Bool SMinimiseInsteadCB(void*, Evas_Object* window)
{
    elm_win_iconified_set(window, EINA_TRUE);
    return EINA_FALSE;
}

void MinimiseLoweredWindows()
{
    static Elm_Win_Trap trap = {};
    trap.version = ELM_WIN_TRAP_VERSION;
    trap.lower = SMinimiseInsteadCB;
    elm_win_trap_set(&trap);
}

void AwaitFirstFrames(const Display& display)
{
    for (Ecore_Evas* window : ListWindows(display))
    {
        if (ecore_evas_data_get(window, kAwaited) != nullptr)
            continue;
        ecore_evas_data_set(window, kAwaited, window);
        evas_event_callback_add(ecore_evas_get(window), EVAS_CALLBACK_RENDER_POST, SDrawnCB,
                                window);
    }
}
} // namespace

WindowVisibility::WindowVisibility(const Display& display, std::function<void()> onLoopIdle)
    : mDisplay(display), mOnLoopIdle(std::move(onLoopIdle)),
      mIdleEnterer(ecore_idle_enterer_before_add(SLoopIdleCB, this))
{
    if (display.GetKind() == Display::Kind::X11)
        WatchX11();
    if (display.GetKind() == Display::Kind::Wayland)
        MinimiseLoweredWindows();
}

WindowVisibility::~WindowVisibility()
{
    for (Ecore_Event_Handler* handler : mHandlers)
        ecore_event_handler_del(handler);
    ecore_idle_enterer_del(mIdleEnterer);
}

void WindowVisibility::WatchX11()
{
    mStacking.emplace();
    mHandlers = {
        ecore_event_handler_add(ECORE_X_EVENT_WINDOW_VISIBILITY_CHANGE, SVisibilityCB, this),
        ecore_event_handler_add(ECORE_X_EVENT_WINDOW_HIDE, SHideCB, this),
        ecore_event_handler_add(ECORE_X_EVENT_WINDOW_DESTROY, SDestroyCB, this)};
}

void WindowVisibility::Forget(Ecore_X_Window window)
{
    mUncovered.erase(window);
    mSeen.erase(window);
}

Ecore_Evas* WindowVisibility::FindVisibleWindow() const
{
    for (Ecore_Evas* window : ListWindows(mDisplay))
    {
        if (IsVisible(window))
            return window;
    }
    return nullptr;
}

bool WindowVisibility::IsVisible(const Ecore_Evas* window) const
{
    if (mStacking)
        return IsVisibleOnX11(window);
    const bool isDrawn = ecore_evas_data_get(window, kDrawn) != nullptr && IsShown(window);
    return isDrawn && (mDisplay.GetKind() != Display::Kind::Wayland || !IsDeactivated(window));
}

bool WindowVisibility::IsVisibleOnX11(const Ecore_Evas* window) const
{
    const auto id = static_cast<Ecore_X_Window>(ecore_evas_window_get(window));
    const auto& inSight = mStacking->IsComposited() ? mSeen : mUncovered;
    // The window manager knows nothing of a window that keeps it out.
    return inSight.count(id) != 0 &&
           (ecore_evas_override_get(window) || !mStacking->IsOutOfSight(id));
}

Eina_Bool WindowVisibility::SLoopIdleCB(void* data)
{
    auto* visibility = static_cast<WindowVisibility*>(data);
    AwaitFirstFrames(visibility->mDisplay);
    for (Ecore_Evas* window : ListWindows(visibility->mDisplay))
        NoteActivation(window);
    if (visibility->mStacking)
        visibility->mStacking->Update();
    visibility->mOnLoopIdle();
    return ECORE_CALLBACK_RENEW;
}

Eina_Bool WindowVisibility::SVisibilityCB(void* data, int, void* event)
{
    const auto* change = static_cast<Ecore_X_Event_Window_Visibility_Change*>(event);
    auto* visibility = static_cast<WindowVisibility*>(data);
    if (change->fully_obscured)
    {
        visibility->mUncovered.erase(change->win);
        return ECORE_CALLBACK_PASS_ON;
    }
    visibility->mUncovered.insert(change->win);
    visibility->mSeen.insert(change->win);
    return ECORE_CALLBACK_PASS_ON;
}

Eina_Bool WindowVisibility::SHideCB(void* data, int, void* event)
{
    const auto* hide = static_cast<Ecore_X_Event_Window_Hide*>(event);
    static_cast<WindowVisibility*>(data)->Forget(hide->win);
    return ECORE_CALLBACK_PASS_ON;
}

Eina_Bool WindowVisibility::SDestroyCB(void* data, int, void* event)
{
    const auto* destroy = static_cast<Ecore_X_Event_Window_Destroy*>(event);
    static_cast<WindowVisibility*>(data)->Forget(destroy->win);
    return ECORE_CALLBACK_PASS_ON;
}
