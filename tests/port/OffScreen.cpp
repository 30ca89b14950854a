#include "port/OffScreen.h"

#include "dlog.h"
#include "support/Allocations.h"

#include <Ecore_Evas.h>
#include <Ecore_Input.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace
{

std::vector<std::string> gLogLines;
int gMarkerEvent = 0;

class Running : public testing::Environment
{
public:
    void SetUp() override
    {
        Toolkit::Start();
        gMarkerEvent = ecore_event_type_new();
    }
    void TearDown() override { Toolkit::Stop(); }
};

auto* const gRunning = testing::AddGlobalTestEnvironment(new Running);

Eina_Bool MarkerCB(void* data, int, void*)
{
    *static_cast<bool*>(data) = true;
    return ECORE_CALLBACK_PASS_ON;
}

Ecore_Event_Key* NewKeyEvent(const char* keyname)
{
    auto* key = static_cast<Ecore_Event_Key*>(calloc(1, sizeof(Ecore_Event_Key)));
    key->keyname = key->key = keyname;
    key->window = key->event_window = Toolkit::kWindowId;
    return key;
}

} // namespace

// A linker that optimises (-flto) sees no call of it.
extern "C" [[gnu::used]] int __wrap___dlog_print(log_id_t, int, const char* tag, const char* format,
                                                 ...)
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
    mWindow = Toolkit::AddWindow();
    mCanvas = evas_object_evas_get(mWindow);
    // The engine does not clear what no object covers.
    evas_object_color_set(AddRectangle(), 0, 0, 0, 255);
    Toolkit::TakeInput(mWindow);
}

void OffScreenTest::TearDown()
{
    Toolkit::LeaveInput();
    evas_object_del(mWindow);
    DeliverEvents();
}

void OffScreenTest::RestartToolkit()
{
    gRunning->TearDown();
    gRunning->SetUp();
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
    EXPECT_TRUE(Toolkit::RunUntil(
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
    ecore_event_add(ECORE_EVENT_KEY_DOWN, NewKeyEvent(keyname), nullptr, nullptr);
    DeliverEvents();
}

void OffScreenTest::ReleaseKey(const char* keyname)
{
    ecore_event_add(ECORE_EVENT_KEY_UP, NewKeyEvent(keyname), nullptr, nullptr);
    DeliverEvents();
}

void OffScreenTest::TurnWheel(int notches, unsigned int timestamp, int direction)
{
    Toolkit::TurnWheel(notches, timestamp, direction);
    DeliverEvents();
}

void OffScreenTest::DeliverEvents()
{
    bool isDelivered = false;
    Ecore_Event_Handler* handler = ecore_event_handler_add(gMarkerEvent, MarkerCB, &isDelivered);
    ecore_event_add(gMarkerEvent, malloc(1), nullptr, nullptr);
    EXPECT_TRUE(Toolkit::RunUntil([&] { return isDelivered; }));
    ecore_event_handler_del(handler);
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
