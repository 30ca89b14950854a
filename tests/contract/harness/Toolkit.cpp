#include "harness/Toolkit.h"

#include "common/NaviFrame.h"
#include "common/RotaryEventManager.h"
#include <cstdlib>

namespace Toolkit
{

void Start()
{
    static bool sIsStarted = false;
    if (sIsStarted)
    {
        return;
    }
    sIsStarted = true;
    setenv("ELM_ENGINE", "buffer", 1);
    setenv("ELM_SCALE", "1.3", 1);
    efreet_cache_disable();
    ecore_app_no_system_modules();
    elm_init(0, nullptr);
    elm_theme_overlay_add(nullptr, PLATFORM_THEME);
}

bool SpinUntil(const std::function<bool()>& condition)
{
    bool isLate = false;
    Ecore_Timer* deadline = ecore_timer_add(
        5.0,
        [](void* data)
        {
            *static_cast<bool*>(data) = true;
            return ECORE_CALLBACK_RENEW;
        },
        &isLate);
    bool holds = condition();
    while (!holds && !isLate)
    {
        ecore_main_loop_iterate_may_block(1);
        holds = condition();
    }
    ecore_timer_del(deadline);
    return holds;
}

Evas_Object* AddWindow()
{
    Evas_Object* window = elm_win_add(nullptr, "test", ELM_WIN_BASIC);
    evas_object_resize(window, 360, 360);
    evas_object_show(window);
    return window;
}

void DeleteWindow(Evas_Object* window)
{
    bool isFreed = false;
    Evas_Object* leftover = evas_object_rectangle_add(evas_object_evas_get(window));
    evas_object_event_callback_add(
        leftover, EVAS_CALLBACK_DEL,
        [](void* data, Evas*, Evas_Object*, void*) { *static_cast<bool*>(data) = true; }, &isFreed);
    evas_object_del(window);
    EXPECT_TRUE(SpinUntil([&] { return isFreed; }));
}

} // namespace Toolkit

void ToolkitTest::SetUp()
{
    Toolkit::Start();
    mWindow = Toolkit::AddWindow();
    Recorder::Reset();
    Platform::Reset();
    Recorder::Name(mWindow, "window");
}

void ToolkitTest::TearDown()
{
    QivoUi::NaviFrame::Destroy();
    if (mWindow)
    {
        Toolkit::DeleteWindow(mWindow);
    }
    QivoUi::NaviFrame::Destroy();
    QivoUi::RotaryEventManager::Destroy();
    Recorder::Reset();
    Platform::Reset();
}
