#include "harness/Toolkit.h"

#include "common/NaviFrame.h"
#include "common/RotaryEventManager.h"
#include <cstdlib>

void StartToolkit()
{
    setenv("ELM_SCALE", "1.3", 1);
    Toolkit::Start(PLATFORM_THEME);
}

void DeleteWindow(Evas_Object* window)
{
    bool isFreed = false;
    Evas_Object* leftover = evas_object_rectangle_add(evas_object_evas_get(window));
    evas_object_event_callback_add(
        leftover, EVAS_CALLBACK_DEL,
        [](void* data, Evas*, Evas_Object*, void*) { *static_cast<bool*>(data) = true; }, &isFreed);
    evas_object_del(window);
    EXPECT_TRUE(Toolkit::RunUntil([&] { return isFreed; }));
}

void ToolkitTest::SetUp()
{
    StartToolkit();
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
        DeleteWindow(mWindow);
    }
    QivoUi::NaviFrame::Destroy();
    QivoUi::RotaryEventManager::Destroy();
    Recorder::Reset();
    Platform::Reset();
}
