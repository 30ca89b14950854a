#include "application/windows/FirstFrame.h"

#include "dlog/PortLog.h"

#include <Evas.h>

namespace WatchPort
{

namespace
{
void SFrameEndCB(void* data, Evas* canvas, void*)
{
    evas_event_callback_del(canvas, EVAS_CALLBACK_RENDER_POST, SFrameEndCB);
    static_cast<const Display*>(data)->Sync();
    PORT_LOG_INFO("first frame");
}

void SFrameBeginCB(void* data, Evas* canvas, void*)
{
    evas_event_callback_del(canvas, EVAS_CALLBACK_RENDER_PRE, SFrameBeginCB);
    evas_event_callback_add(canvas, EVAS_CALLBACK_RENDER_POST, SFrameEndCB, data);
}
} // namespace

void ReportFrame(Ecore_Evas* window, const Display& display)
{
    Evas* canvas = ecore_evas_get(window);
    evas_event_callback_add(canvas, EVAS_CALLBACK_RENDER_PRE, SFrameBeginCB, &display);
    // Nothing may have changed since the last frame, and then none would be drawn.
    evas_damage_rectangle_add(canvas, 0, 0, 1, 1);
}

} // namespace WatchPort
