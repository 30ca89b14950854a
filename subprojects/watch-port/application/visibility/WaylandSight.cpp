#include "application/visibility/WaylandSight.h"

#include "application/windows/Windows.h"

namespace WatchPort
{

namespace
{
// Set on a window once it has been active since it was shown.
constexpr char kActivated[] = "watch-port-activated";
// Set on a window that was hidden while active, until it is not active.
constexpr char kHiddenActive[] = "watch-port-hidden-active";
} // namespace

void WaylandSight::Update()
{
    OffScreenSight::Update();
    for (Ecore_Evas* window : ListWindows(mDisplay))
        NoteActivation(window);
}

bool WaylandSight::CanBeSeen(const Ecore_Evas* window) const
{
    const bool isDeactivated =
        ecore_evas_data_get(window, kActivated) && !ecore_evas_focus_get(window);
    return OffScreenSight::CanBeSeen(window) && !isDeactivated;
}

void WaylandSight::NoteActivation(Ecore_Evas* window)
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

} // namespace WatchPort
