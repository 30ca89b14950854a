#include "application/windows/LeftWindows.h"

#include "application/windows/WindowTrap.h"

namespace WatchPort
{

namespace
{
// Set on a window that the application has left.
constexpr char kLeft[] = "watch-port-left";
// Set on a window that was left when a turn of the loop had ended.
constexpr char kGone[] = "watch-port-gone";

Ecore_Evas* CanvasOf(const Evas_Object* window)
{
    return ecore_evas_ecore_evas_get(evas_object_evas_get(window));
}

Eina_Bool SLowerCB(void*, Evas_Object* window)
{
    ecore_evas_data_set(CanvasOf(window), kLeft, window);
    return EINA_TRUE;
}

Eina_Bool SWithdrawCB(void*, Evas_Object* window, Eina_Bool isWithdrawn)
{
    ecore_evas_data_set(CanvasOf(window), kLeft, isWithdrawn ? window : nullptr);
    return EINA_TRUE;
}

Eina_Bool SBringBackCB(void*, Evas_Object* window)
{
    NoteReturn(CanvasOf(window));
    return EINA_TRUE;
}

// No client of Wayland can lower its window; what it can do to leave is to minimise it.
Eina_Bool SMinimiseInsteadCB(void*, Evas_Object* window)
{
    elm_win_iconified_set(window, EINA_TRUE);
    return EINA_FALSE;
}
} // namespace

void NoteLeaving(const Display& display)
{
    Elm_Win_Trap& trap = WindowTrap();
    if (display.GetKind() == Display::Kind::Wayland)
    {
        trap.lower = SMinimiseInsteadCB;
    }
    else
    {
        trap.lower = SLowerCB;
        trap.withdrawn_set = SWithdrawCB;
        trap.show = SBringBackCB;
        trap.raise = SBringBackCB;
        trap.activate = SBringBackCB;
    }
}

bool IsLeft(const Ecore_Evas* window)
{
    return ecore_evas_data_get(window, kLeft) != nullptr;
}

bool IsGone(const Ecore_Evas* window)
{
    return ecore_evas_data_get(window, kGone) != nullptr;
}

void NoteGone(Ecore_Evas* window)
{
    ecore_evas_data_set(window, kGone, IsLeft(window) ? window : nullptr);
}

void NoteReturn(Ecore_Evas* window)
{
    ecore_evas_data_set(window, kLeft, nullptr);
}

} // namespace WatchPort
