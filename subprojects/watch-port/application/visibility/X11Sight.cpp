#include "application/visibility/X11Sight.h"

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

Ecore_X_Window IdOf(const Ecore_Evas* window)
{
    return static_cast<Ecore_X_Window>(ecore_evas_window_get(window));
}
} // namespace

X11Sight::X11Sight(const Display& display)
    : mDisplay(display), mHandlers{
                             ecore_event_handler_add(ECORE_X_EVENT_WINDOW_VISIBILITY_CHANGE,
                                                     SVisibilityCB, this),
                             ecore_event_handler_add(ECORE_X_EVENT_WINDOW_HIDE, SHideCB, this),
                             ecore_event_handler_add(ECORE_X_EVENT_WINDOW_DESTROY, SDestroyCB,
                                                     this),
                             ecore_event_handler_add(ECORE_EVENT_MOUSE_BUTTON_DOWN, SPressCB, this)}
{
}

X11Sight::~X11Sight()
{
    for (Ecore_Event_Handler* handler : mHandlers)
        ecore_event_handler_del(handler);
    if (mTakeOverTimer)
        ecore_timer_del(mTakeOverTimer);
}

void X11Sight::Update()
{
    mStacking.Update();
    NoteActivation();
}

bool X11Sight::CanBeSeen(const Ecore_Evas* window) const
{
    const Ecore_X_Window id = IdOf(window);
    const auto& inSight = mStacking.IsComposited() ? mSeen : mUncovered;
    // The window manager knows nothing of a window that keeps it out.
    return inSight.count(id) != 0 &&
           (ecore_evas_override_get(window) || !mStacking.IsOutOfSight(id));
}

bool X11Sight::IsAskedFor(const Ecore_Evas* window) const
{
    return mAskedFor != 0 && mAskedFor == IdOf(window);
}

// That a window is active for the first time is no sign: window managers make a new window active,
// and some after the application has drawn it, and lowered it.
void X11Sight::NoteActivation()
{
    const Ecore_X_Window active = mStacking.GetActive();
    mAskedFor = 0;
    if (std::exchange(mActive, active) == active)
        return;
    for (const Ecore_Evas* window : ListWindows(mDisplay))
    {
        if (IdOf(window) == active && !mActivated.insert(active).second)
            mAskedFor = active;
    }
}

void X11Sight::Forget(Ecore_X_Window window)
{
    mUncovered.erase(window);
    mSeen.erase(window);
    mActivated.erase(window);
    mTakenAway.erase(window);
}

bool X11Sight::IsWanted(Ecore_X_Window id) const
{
    for (const Ecore_Evas* window : ListWindows(mDisplay))
    {
        if (IdOf(window) == id)
            return !IsHidden(window) && !IsLeft(window);
    }
    return false;
}

// A window manager that starts hides each window and shows it again in a frame of its own. What it
// hides for good it calls minimised.
void X11Sight::AwaitReturn(Ecore_X_Window window)
{
    mTakenAway.insert(window);
    if (mTakeOverTimer)
        ecore_timer_del(mTakeOverTimer);
    mTakeOverTimer = ecore_timer_add(kTakeOverSeconds, SNotReturnedCB, this);
}

Eina_Bool X11Sight::SVisibilityCB(void* data, int, void* event)
{
    const auto* change = static_cast<Ecore_X_Event_Window_Visibility_Change*>(event);
    auto* sight = static_cast<X11Sight*>(data);
    sight->mTakenAway.erase(change->win);
    if (change->fully_obscured)
    {
        sight->mUncovered.erase(change->win);
        return ECORE_CALLBACK_PASS_ON;
    }
    sight->mUncovered.insert(change->win);
    sight->mSeen.insert(change->win);
    return ECORE_CALLBACK_PASS_ON;
}

Eina_Bool X11Sight::SHideCB(void* data, int, void* event)
{
    const auto* hide = static_cast<Ecore_X_Event_Window_Hide*>(event);
    auto* sight = static_cast<X11Sight*>(data);
    if (sight->IsWanted(hide->win))
        sight->AwaitReturn(hide->win);
    else
        sight->Forget(hide->win);
    return ECORE_CALLBACK_PASS_ON;
}

Eina_Bool X11Sight::SNotReturnedCB(void* data)
{
    auto* sight = static_cast<X11Sight*>(data);
    sight->mTakeOverTimer = nullptr;
    for (const Ecore_X_Window window : std::set<Ecore_X_Window>(sight->mTakenAway))
        sight->Forget(window);
    return ECORE_CALLBACK_CANCEL;
}

// Nothing else shows that the user wants a window again that is active and has nothing above it.
Eina_Bool X11Sight::SPressCB(void* data, int, void* event)
{
    const Ecore_Window pressed = static_cast<Ecore_Event_Mouse_Button*>(event)->event_window;
    for (Ecore_Evas* window : ListWindows(static_cast<X11Sight*>(data)->mDisplay))
    {
        if (ecore_evas_window_get(window) == pressed && IsGone(window))
            NoteReturn(window);
    }
    return ECORE_CALLBACK_PASS_ON;
}

Eina_Bool X11Sight::SDestroyCB(void* data, int, void* event)
{
    const auto* destroy = static_cast<Ecore_X_Event_Window_Destroy*>(event);
    static_cast<X11Sight*>(data)->Forget(destroy->win);
    return ECORE_CALLBACK_PASS_ON;
}

} // namespace WatchPort
