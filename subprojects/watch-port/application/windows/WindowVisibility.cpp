#include "application/windows/WindowVisibility.h"

#include "application/windows/LeftWindows.h"
#include "application/windows/Windows.h"

#include <Ecore_Input.h>
#include <utility>

namespace WatchPort
{

namespace
{
// In which a window manager that starts has taken a window over.
constexpr double kTakeOverSeconds = 5;

// Set on a window once a frame of it has been drawn.
constexpr char kDrawn[] = "watch-port-drawn";
// Set on a window whose first frame is waited for.
constexpr char kAwaited[] = "watch-port-awaited";
// Set on a window once it has been active since it was shown.
constexpr char kActivated[] = "watch-port-activated";
// Set on a window that was hidden while active, until it is not active.
constexpr char kHiddenActive[] = "watch-port-hidden-active";
// Set on a window that the application has left and counts as out of sight for it.
constexpr char kGone[] = "watch-port-gone";
// Set on a window that could be seen if the application had not left it.
constexpr char kUncovered[] = "watch-port-uncovered";

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
// window's object.
bool IsShown(const Ecore_Evas* window)
{
    return ecore_evas_visibility_get(window) != 0 && !ecore_evas_iconified_get(window) &&
           (!WindowObject(window) || !IsHidden(window));
}

bool IsDeactivated(const Ecore_Evas* window)
{
    return ecore_evas_data_get(window, kActivated) && !ecore_evas_focus_get(window);
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
    else if (isActive && !ecore_evas_data_get(window, kHiddenActive))
        ecore_evas_data_set(window, kActivated, window);
}

bool IsGone(const Ecore_Evas* window)
{
    return ecore_evas_data_get(window, kGone) != nullptr;
}

void AwaitFirstFrames(const Display& display)
{
    for (Ecore_Evas* window : ListWindows(display))
    {
        if (ecore_evas_data_get(window, kAwaited))
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
    NoteLeaving(display);
    if (display.GetKind() == Display::Kind::X11)
        WatchX11();
}

WindowVisibility::~WindowVisibility()
{
    for (Ecore_Event_Handler* handler : mHandlers)
        ecore_event_handler_del(handler);
    ecore_idle_enterer_del(mIdleEnterer);
    if (mTakeOverTimer)
        ecore_timer_del(mTakeOverTimer);
}

void WindowVisibility::WatchX11()
{
    mStacking.emplace();
    mHandlers = {
        ecore_event_handler_add(ECORE_X_EVENT_WINDOW_VISIBILITY_CHANGE, SVisibilityCB, this),
        ecore_event_handler_add(ECORE_X_EVENT_WINDOW_HIDE, SHideCB, this),
        ecore_event_handler_add(ECORE_X_EVENT_WINDOW_DESTROY, SDestroyCB, this),
        ecore_event_handler_add(ECORE_EVENT_MOUSE_BUTTON_DOWN, SPressCB, this)};
}

void WindowVisibility::Forget(Ecore_X_Window window)
{
    mUncovered.erase(window);
    mSeen.erase(window);
    mActivated.erase(window);
    mTakenAway.erase(window);
}

bool WindowVisibility::IsWanted(Ecore_X_Window id) const
{
    for (const Ecore_Evas* window : ListWindows(mDisplay))
    {
        if (ecore_evas_window_get(window) == id)
            return !IsHidden(window) && !IsLeft(window);
    }
    return false;
}

// A window manager that starts hides each window and shows it again in a frame of its own. What it
// hides for good it calls minimised.
void WindowVisibility::AwaitReturn(Ecore_X_Window window)
{
    mTakenAway.insert(window);
    if (mTakeOverTimer)
        ecore_timer_del(mTakeOverTimer);
    mTakeOverTimer = ecore_timer_add(kTakeOverSeconds, SNotReturnedCB, this);
}

// A window that the application has left is in sight again when it was covered and is no more, and
// when the user makes it active. That it is active for the first time is no sign: window managers
// make a new window active, and some after the application has drawn it, and lowered it.
void WindowVisibility::NoteReturns()
{
    const Ecore_X_Window active = mStacking ? mStacking->GetActive() : 0;
    const bool isNewlyActive = std::exchange(mActive, active) != active;
    for (Ecore_Evas* window : ListWindows(mDisplay))
    {
        const bool isUncovered = CanBeSeen(window);
        const bool wasUncovered = ecore_evas_data_get(window, kUncovered) != nullptr;
        const bool isActiveAgain = isNewlyActive && ecore_evas_window_get(window) == active &&
                                   !mActivated.insert(active).second;
        if (IsGone(window) && ((isUncovered && !wasUncovered) || isActiveAgain))
            NoteReturn(window);
        ecore_evas_data_set(window, kUncovered, isUncovered ? window : nullptr);
        ecore_evas_data_set(window, kGone, IsLeft(window) ? window : nullptr);
    }
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
    return CanBeSeen(window) && !IsLeft(window);
}

bool WindowVisibility::CanBeSeen(const Ecore_Evas* window) const
{
    if (mStacking)
        return CanBeSeenOnX11(window);
    const bool isDrawn = ecore_evas_data_get(window, kDrawn) && IsShown(window);
    return isDrawn && (mDisplay.GetKind() != Display::Kind::Wayland || !IsDeactivated(window));
}

bool WindowVisibility::CanBeSeenOnX11(const Ecore_Evas* window) const
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
    visibility->NoteReturns();
    visibility->mOnLoopIdle();
    return ECORE_CALLBACK_RENEW;
}

Eina_Bool WindowVisibility::SVisibilityCB(void* data, int, void* event)
{
    const auto* change = static_cast<Ecore_X_Event_Window_Visibility_Change*>(event);
    auto* visibility = static_cast<WindowVisibility*>(data);
    visibility->mTakenAway.erase(change->win);
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
    auto* visibility = static_cast<WindowVisibility*>(data);
    if (visibility->IsWanted(hide->win))
        visibility->AwaitReturn(hide->win);
    else
        visibility->Forget(hide->win);
    return ECORE_CALLBACK_PASS_ON;
}

Eina_Bool WindowVisibility::SNotReturnedCB(void* data)
{
    auto* visibility = static_cast<WindowVisibility*>(data);
    visibility->mTakeOverTimer = nullptr;
    for (const Ecore_X_Window window : std::set<Ecore_X_Window>(visibility->mTakenAway))
        visibility->Forget(window);
    return ECORE_CALLBACK_CANCEL;
}

// Of a window that is active and has nothing above it, nobody else tells that it is wanted again.
Eina_Bool WindowVisibility::SPressCB(void* data, int, void* event)
{
    const Ecore_Window pressed = static_cast<Ecore_Event_Mouse_Button*>(event)->event_window;
    for (Ecore_Evas* window : ListWindows(static_cast<WindowVisibility*>(data)->mDisplay))
    {
        if (ecore_evas_window_get(window) == pressed && IsGone(window))
            NoteReturn(window);
    }
    return ECORE_CALLBACK_PASS_ON;
}

Eina_Bool WindowVisibility::SDestroyCB(void* data, int, void* event)
{
    const auto* destroy = static_cast<Ecore_X_Event_Window_Destroy*>(event);
    static_cast<WindowVisibility*>(data)->Forget(destroy->win);
    return ECORE_CALLBACK_PASS_ON;
}

} // namespace WatchPort
