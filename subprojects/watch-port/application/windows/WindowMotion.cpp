#include "application/windows/WindowMotion.h"

#include "application/windows/WindowTrap.h"

#include <Ecore_Eo.h>
#include <Ecore_Evas.h>
#include <Ecore_X.h>
#include <Elementary.h>
#include <efl_canvas_object.eo.h>

namespace WatchPort
{

namespace
{

constexpr const char* kProperty = "_WATCH_PORT_MOTION";

// Counts who waits for the ticks of one window, from its beginning; it ends with the window.
class WindowMotion
{
public:
    explicit WindowMotion(Evas_Object* window) : mCanvas(evas_object_evas_get(window))
    {
        efl_event_callback_add(mCanvas, EFL_EVENT_CALLBACK_ADD, SAddedCB, this);
        efl_event_callback_add(mCanvas, EFL_EVENT_CALLBACK_DEL, SRemovedCB, this);
        evas_object_event_callback_add(window, EVAS_CALLBACK_DEL, SWindowDeletedCB, this);
        Tell();
    }
    WindowMotion(const WindowMotion&) = delete;
    WindowMotion& operator=(const WindowMotion&) = delete;

private:
    ~WindowMotion()
    {
        if (mEnd)
            ecore_job_del(mEnd);
        efl_event_callback_del(mCanvas, EFL_EVENT_CALLBACK_ADD, SAddedCB, this);
        efl_event_callback_del(mCanvas, EFL_EVENT_CALLBACK_DEL, SRemovedCB, this);
    }

    static bool IsForTicks(const Efl_Event* event)
    {
        const auto* item = static_cast<const Efl_Callback_Array_Item_Full*>(event->info);
        while (item->desc && item->desc != EFL_CANVAS_OBJECT_EVENT_ANIMATOR_TICK)
            ++item;
        return item->desc != nullptr;
    }

    static void SAddedCB(void* data, const Efl_Event* event)
    {
        auto* self = static_cast<WindowMotion*>(data);
        if (!IsForTicks(event))
            return;
        ++self->mWaiting;
        if (!self->mIsMoving)
            self->Tell();
    }

    // One motion may take the place of another, which then leaves first.
    static void SRemovedCB(void* data, const Efl_Event* event)
    {
        auto* self = static_cast<WindowMotion*>(data);
        if (IsForTicks(event) && --self->mWaiting == 0 && !self->mEnd)
            self->mEnd = ecore_job_add(SEndCB, self);
    }

    static void SEndCB(void* data)
    {
        auto* self = static_cast<WindowMotion*>(data);
        self->mEnd = nullptr;
        if (self->mWaiting == 0)
            self->Tell();
    }

    static void SWindowDeletedCB(void* data, Evas*, Evas_Object*, void*)
    {
        delete static_cast<WindowMotion*>(data);
    }

    void Tell()
    {
        mIsMoving = mWaiting > 0;
        unsigned int value = mIsMoving ? 1 : 0;
        const auto window =
            static_cast<Ecore_X_Window>(ecore_evas_window_get(ecore_evas_ecore_evas_get(mCanvas)));
        // One that is a picture in another window has no place on the display.
        if (window != 0)
            ecore_x_window_prop_card32_set(window, ecore_x_atom_get(kProperty), &value, 1);
    }

    Evas* const mCanvas;
    int mWaiting = 0;
    bool mIsMoving = false;
    Ecore_Job* mEnd = nullptr;
};

void* SWindowAddedCB(Evas_Object* window)
{
    return new WindowMotion(window);
}

} // namespace

void TellMotions(const Display& display)
{
    if (display.GetKind() == Display::Kind::X11)
        WindowTrap().add = SWindowAddedCB;
}

} // namespace WatchPort
