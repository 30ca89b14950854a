#include "support/Toolkit.h"

#include <Ecore_Evas.h>
#include <Ecore_Input.h>
#include <Ecore_Input_Evas.h>
#include <Efreet.h>
#include <cstdlib>

namespace
{

constexpr double kDeadlineS = 5.0;
constexpr double kTickS = 0.005;

bool gIsStarted = false;

} // namespace

void Toolkit::Start(const char* theme)
{
    if (gIsStarted)
        return;
    gIsStarted = true;
    setenv("ELM_ENGINE", "buffer", 1);
    // The stack of each complaint costs more than most tests.
    setenv("EINA_LOG_BACKTRACE", "-1", 1);
    ecore_app_no_system_modules();
    efreet_cache_disable();
    elm_init(0, nullptr);
    if (theme)
        elm_theme_overlay_add(nullptr, theme);
}

void Toolkit::Stop()
{
    elm_shutdown();
    gIsStarted = false;
}

Evas_Object* Toolkit::AddWindow(int side)
{
    Evas_Object* window = elm_win_add(nullptr, "test", ELM_WIN_BASIC);
    evas_object_resize(window, side, side);
    evas_object_show(window);
    return window;
}

void Toolkit::TakeInput(Evas_Object* window)
{
    Evas* canvas = evas_object_evas_get(window);
    ecore_event_window_register(kWindowId, ecore_evas_ecore_evas_get(canvas), canvas, nullptr,
                                nullptr, nullptr, nullptr);
    int width = 0;
    int height = 0;
    evas_object_geometry_get(window, nullptr, nullptr, &width, &height);
    evas_event_feed_mouse_in(canvas, 0, nullptr);
    evas_event_feed_mouse_move(canvas, width / 2, height / 2, 0, nullptr);
}

void Toolkit::LeaveInput()
{
    ecore_event_window_unregister(kWindowId);
}

void Toolkit::TurnWheel(int notches, unsigned int timestamp, int direction)
{
    auto* wheel = static_cast<Ecore_Event_Mouse_Wheel*>(calloc(1, sizeof(Ecore_Event_Mouse_Wheel)));
    wheel->window = wheel->event_window = kWindowId;
    wheel->z = notches;
    wheel->timestamp = timestamp;
    wheel->direction = direction;
    ecore_event_add(ECORE_EVENT_MOUSE_WHEEL, wheel, nullptr, nullptr);
}

bool Toolkit::RunUntil(const std::function<bool()>& condition)
{
    // A condition may hang on the time alone.
    Ecore_Timer* tick = ecore_timer_add(
        kTickS, [](void*) -> Eina_Bool { return ECORE_CALLBACK_RENEW; }, nullptr);
    const double end = ecore_time_get() + kDeadlineS;
    while (!condition() && ecore_time_get() < end)
        ecore_main_loop_iterate_may_block(EINA_TRUE);
    ecore_timer_del(tick);
    return condition();
}
