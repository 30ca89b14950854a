#include "application/windows/ClosedWindow.h"

#include "application/windows/Windows.h"

#include <Elementary.h>
#include <algorithm>

namespace WatchPort
{

namespace
{
constexpr char kDeleteRequest[] = "delete,request";
// Set on a window that is watched.
constexpr char kWatched[] = "watch-port-close-watched";
} // namespace

ClosedWindow::ClosedWindow(const Display& display, std::function<void()> onClosed)
    : mDisplay(display), mOnClosed(std::move(onClosed))
{
}

ClosedWindow::~ClosedWindow()
{
    for (const Ecore_Evas* window : ListWindows(mDisplay))
    {
        auto* object = static_cast<Evas_Object*>(ecore_evas_data_get(window, kWatched));
        if (!object)
            continue;
        evas_object_smart_callback_del_full(object, kDeleteRequest, SDeleteRequestCB, this);
        evas_object_event_callback_del(object, EVAS_CALLBACK_DEL, SDeletedCB);
    }
    if (mKept)
        evas_object_unref(mKept);
}

void ClosedWindow::Update()
{
    for (Ecore_Evas* window : ListWindows(mDisplay))
    {
        Evas_Object* object = WindowObject(window);
        if (!object || ecore_evas_data_get(window, kWatched))
            continue;
        ecore_evas_data_set(window, kWatched, object);
        evas_object_smart_callback_add(object, kDeleteRequest, SDeleteRequestCB, this);
        evas_object_event_callback_add(object, EVAS_CALLBACK_DEL, SDeletedCB, nullptr);
    }
}

// The toolkit goes on to list the window for a while.
void ClosedWindow::SDeletedCB(void*, Evas* canvas, Evas_Object*, void*)
{
    ecore_evas_data_set(ecore_evas_ecore_evas_get(canvas), kWatched, nullptr);
}

bool ClosedWindow::IsLast(const Evas_Object* window) const
{
    const std::vector<Ecore_Evas*> windows = ListWindows(mDisplay);
    return std::none_of(windows.begin(), windows.end(),
                        [window](const Ecore_Evas* other)
                        { return WindowObject(other) != window && !IsHidden(other); });
}

void ClosedWindow::SDeleteRequestCB(void* data, Evas_Object* window, void*)
{
    auto* closed = static_cast<ClosedWindow*>(data);
    if (closed->mKept || !elm_win_autodel_get(window) || !closed->IsLast(window))
        return;
    closed->mKept = window;
    // The toolkit has made up its mind before this call; what it deletes stays while it is held.
    evas_object_ref(window);
    closed->mOnClosed();
}

} // namespace WatchPort
