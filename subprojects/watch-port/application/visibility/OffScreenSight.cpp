#include "application/visibility/OffScreenSight.h"

#include "application/windows/Windows.h"

#include <Ecore.h>

namespace WatchPort
{

namespace
{
// Set on a window once a frame of it has been drawn.
constexpr char kDrawn[] = "watch-port-drawn";
// Set on a window whose first frame is waited for.
constexpr char kAwaited[] = "watch-port-awaited";

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
} // namespace

void OffScreenSight::Update()
{
    for (Ecore_Evas* window : ListWindows(mDisplay))
    {
        if (ecore_evas_data_get(window, kAwaited))
            continue;
        ecore_evas_data_set(window, kAwaited, window);
        evas_event_callback_add(ecore_evas_get(window), EVAS_CALLBACK_RENDER_POST, SDrawnCB,
                                window);
    }
}

bool OffScreenSight::CanBeSeen(const Ecore_Evas* window) const
{
    return ecore_evas_data_get(window, kDrawn) && IsShown(window);
}

// On an engine without windows the toolkit leaves the canvas visible when the window's object is
// hidden.
bool OffScreenSight::IsShown(const Ecore_Evas* window)
{
    return ecore_evas_visibility_get(window) != 0 && !ecore_evas_iconified_get(window) &&
           (!WindowObject(window) || !IsHidden(window));
}

} // namespace WatchPort
