#include "port/OffScreen.h"

#include "dlog.h"
#include "harness/Allocations.h"

#include <Ecore_Evas.h>
#include <Ecore_Input.h>
#include <Ecore_Input_Evas.h>
#include <Efreet.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace
{

constexpr double kDeadline = 5.0;
constexpr double kTick = 0.005;

std::vector<std::string> gLogLines;
int gMarkerEvent = 0;

class Toolkit : public testing::Environment
{
public:
    void SetUp() override
    {
        setenv("ELM_ENGINE", "buffer", 1);
        setenv("EINA_LOG_BACKTRACE", "-1", 1);
        Start();
    }
    void TearDown() override { elm_shutdown(); }

    static void Start()
    {
        ecore_app_no_system_modules();
        efreet_cache_disable();
        elm_init(0, nullptr);
        gMarkerEvent = ecore_event_type_new();
    }
};

const auto* const gToolkit = testing::AddGlobalTestEnvironment(new Toolkit);

Eina_Bool MarkerCB(void* data, int, void*)
{
    *static_cast<bool*>(data) = true;
    return ECORE_CALLBACK_PASS_ON;
}

template <typename Event> Event* NewEvent()
{
    return static_cast<Event*>(calloc(1, sizeof(Event)));
}

Ecore_Event_Key* NewKeyEvent(Ecore_Window window, const char* keyname)
{
    auto* key = NewEvent<Ecore_Event_Key>();
    key->keyname = key->key = keyname;
    key->window = key->event_window = window;
    return key;
}

} // namespace

extern "C" int __wrap___dlog_print(log_id_t, int, const char* tag, const char* format, ...)
{
    char line[1024];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    const Allocations::Pause pause;
    if (!strcmp(tag, "WATCH_PORT"))
        gLogLines.emplace_back(line);
    return 0;
}

void OffScreenTest::SetUp()
{
    gLogLines.clear();
    mWindow = elm_win_add(nullptr, "watch", ELM_WIN_BASIC);
    mCanvas = evas_object_evas_get(mWindow);
    evas_object_resize(mWindow, kSize, kSize);
    evas_object_show(mWindow);
    // The engine does not clear what no object covers.
    evas_object_color_set(AddRectangle(), 0, 0, 0, 255);
    ecore_event_window_register(kWindowId, ecore_evas_ecore_evas_get(mCanvas), mCanvas, nullptr,
                                nullptr, nullptr, nullptr);
    evas_event_feed_mouse_in(mCanvas, 0, nullptr);
    evas_event_feed_mouse_move(mCanvas, kSize / 2, kSize / 2, 0, nullptr);
}

void OffScreenTest::TearDown()
{
    ecore_event_window_unregister(kWindowId);
    evas_object_del(mWindow);
    DeliverEvents();
}

void OffScreenTest::RestartToolkit()
{
    elm_shutdown();
    Toolkit::Start();
}

Evas_Object* OffScreenTest::AddRectangle()
{
    Evas_Object* rectangle = evas_object_rectangle_add(mCanvas);
    evas_object_resize(rectangle, kSize, kSize);
    evas_object_show(rectangle);
    return rectangle;
}

Evas_Object* OffScreenTest::AddScroller(int contentWidth, int contentHeight, const char* style)
{
    Evas_Object* scroller = elm_scroller_add(mWindow);
    elm_object_style_set(scroller, style);
    Evas_Object* content = evas_object_rectangle_add(mCanvas);
    evas_object_color_set(content, 0, 0, 128, 255);
    evas_object_size_hint_min_set(content, contentWidth, contentHeight);
    elm_object_content_set(scroller, content);
    evas_object_resize(scroller, kSize, kSize);
    evas_object_show(scroller);
    EXPECT_TRUE(RunUntil(
        [=]
        {
            int width = 0;
            int height = 0;
            elm_scroller_child_size_get(scroller, &width, &height);
            return width >= contentWidth && height >= contentHeight;
        }));
    return scroller;
}

void OffScreenTest::PressKey(const char* keyname)
{
    ecore_event_add(ECORE_EVENT_KEY_DOWN, NewKeyEvent(kWindowId, keyname), nullptr, nullptr);
    DeliverEvents();
}

void OffScreenTest::ReleaseKey(const char* keyname)
{
    ecore_event_add(ECORE_EVENT_KEY_UP, NewKeyEvent(kWindowId, keyname), nullptr, nullptr);
    DeliverEvents();
}

void OffScreenTest::TurnWheel(int notches, unsigned int timestamp, int direction)
{
    auto* wheel = NewEvent<Ecore_Event_Mouse_Wheel>();
    wheel->window = wheel->event_window = kWindowId;
    wheel->z = notches;
    wheel->timestamp = timestamp;
    wheel->direction = direction;
    ecore_event_add(ECORE_EVENT_MOUSE_WHEEL, wheel, nullptr, nullptr);
    DeliverEvents();
}

void OffScreenTest::DeliverEvents()
{
    bool isDelivered = false;
    Ecore_Event_Handler* handler = ecore_event_handler_add(gMarkerEvent, MarkerCB, &isDelivered);
    ecore_event_add(gMarkerEvent, malloc(1), nullptr, nullptr);
    EXPECT_TRUE(RunUntil([&] { return isDelivered; }));
    ecore_event_handler_del(handler);
}

bool OffScreenTest::RunUntil(const std::function<bool()>& condition)
{
    Ecore_Timer* tick = ecore_timer_add(
        kTick, [](void*) -> Eina_Bool { return ECORE_CALLBACK_RENEW; }, nullptr);
    double end = ecore_time_get() + kDeadline;
    while (!condition() && ecore_time_get() < end)
        ecore_main_loop_iterate_may_block(EINA_TRUE);
    ecore_timer_del(tick);
    return condition();
}

unsigned int OffScreenTest::PixelAt(int x, int y) const
{
    Ecore_Evas* host = ecore_evas_ecore_evas_get(mCanvas);
    ecore_evas_manual_render(host);
    const auto* pixels = static_cast<const unsigned int*>(ecore_evas_buffer_pixels_get(host));
    return pixels[y * kSize + x];
}

const std::vector<std::string>& OffScreenTest::LogLines()
{
    return gLogLines;
}
