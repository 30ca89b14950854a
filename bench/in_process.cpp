// Measures single operations of the application's own objects on the real toolkit, off screen, and
// beside them, as NAME/bare, the shortest way to the same result.
//
// The log goes to standard error, which the caller sends to a file.

#include "common/Log.h"
#include "common/NaviFrame.h"
#include "common/NaviFrameItemPopHandler.h"
#include "common/RotaryEventManager.h"

#include <Efreet.h>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <malloc.h>
#include <vector>

namespace
{
// The toolkit, with a window of the watch's size that is never drawn.
class Toolkit
{
public:
    Toolkit()
    {
        elm_init(0, nullptr);
        elm_theme_overlay_add(nullptr, PLATFORM_THEME);
        mWindow = elm_win_add(nullptr, "bench", ELM_WIN_BASIC);
        evas_object_resize(mWindow, 360, 360);
    }
    ~Toolkit() { elm_shutdown(); }
    Toolkit(const Toolkit&) = delete;
    Toolkit& operator=(const Toolkit&) = delete;

    Evas_Object* Window() const { return mWindow; }

private:
    Evas_Object* mWindow;
};

Evas_Object* Window()
{
    static const Toolkit sToolkit;
    return sToolkit.Window();
}

// A turn of the loop with a frame, after which the toolkit frees what was deleted.
void RunLoopOnce()
{
    ecore_main_loop_iterate();
    evas_norender(evas_object_evas_get(Window()));
}

constexpr int kScreens = 100;
constexpr int kRounds = 10;

Evas_Object* NewScreen()
{
    return elm_grid_add(Window());
}

Evas_Object* NewLayout()
{
    Evas_Object* layout = elm_layout_add(Window());
    elm_layout_theme_set(layout, "layout", "application", "default");
    return layout;
}

// The toolkit queues what it has deleted, up to some 20 MB, before it frees it.
size_t UsedMemory()
{
    eina_freeq_clear(eina_freeq_main_get());
    return mallinfo2().uordblks;
}

// What each screen leaves behind. The first round is not counted: it makes what is made once.
void CountKept(benchmark::State& state, const std::vector<size_t>& used)
{
    constexpr double kCounted = (kRounds - 2) * kScreens;
    state.counters["kept"] =
        (static_cast<double>(used.back()) - static_cast<double>(used[1])) / kCounted;
}

void PushAndPopBare(benchmark::State& state)
{
    Evas_Object* layout = NewLayout();
    Evas_Object* frame = elm_naviframe_add(layout);
    elm_object_part_content_set(layout, "elm.swallow.content", frame);
    elm_naviframe_item_push(frame, "", nullptr, nullptr, NewScreen(), "empty");
    std::vector<size_t> used;
    for (auto _ : state)
    {
        for (int i = 0; i < kScreens; ++i)
        {
            Elm_Object_Item* top = elm_naviframe_top_item_get(frame);
            Elm_Object_Item* item = elm_naviframe_item_insert_after(frame, top, "", nullptr,
                                                                    nullptr, NewScreen(), "empty");
            elm_object_item_del(item);
            RunLoopOnce();
        }
        used.push_back(UsedMemory());
    }
    CountKept(state, used);
    evas_object_del(layout);
}
BENCHMARK(PushAndPopBare)->Name("push_pop/bare")->Iterations(kRounds);

std::shared_ptr<QivoUi::NaviFrameItemPopHandler> Push()
{
    auto record = std::make_shared<QivoUi::NaviFrameItemData>();
    record->mViewLayout = NewScreen();
    return QivoUi::NaviFrame::GetInstance()->PushNaviframeItem(record, false);
}

void PushAndPop(benchmark::State& state)
{
    Evas_Object* layout = NewLayout();
    auto* frame = QivoUi::NaviFrame::GetInstance();
    frame->SetMainWindow(Window());
    frame->CreateNaviFrame(layout);
    const auto bottom = Push();
    std::vector<size_t> used;
    for (auto _ : state)
    {
        for (int i = 0; i < kScreens; ++i)
        {
            Push()->Pop(false, nullptr);
            RunLoopOnce();
        }
        used.push_back(UsedMemory());
    }
    CountKept(state, used);
    evas_object_del(layout);
    frame->Destroy();
}
BENCHMARK(PushAndPop)->Name("push_pop")->Iterations(kRounds);

// The listener of both ways.
class Counter : public QivoUi::RotaryEventListener
{
public:
    explicit Counter(Evas_Object* object) : mObject(object) {}

    Evas_Object* GetRotaryViewObject() override { return mObject; }
    void OnRotaryEvent(int step, unsigned int /*timeStamp*/) override
    {
        benchmark::DoNotOptimize(mSum += step);
    }

private:
    Evas_Object* mObject;
    int mSum = 0;
};

// The most detents that one wheel event may be.
constexpr int kDetents = 100;

void TurnWheel()
{
    auto* wheel =
        static_cast<Ecore_Event_Mouse_Wheel*>(std::calloc(1, sizeof(Ecore_Event_Mouse_Wheel)));
    wheel->z = kDetents;
    ecore_event_add(ECORE_EVENT_MOUSE_WHEEL, wheel, nullptr, nullptr);
    ecore_main_loop_iterate();
}

Eina_Bool BareDetentCB(void* data, Evas_Object* /*object*/, Eext_Rotary_Event_Info* info)
{
    const int step = info->direction == EEXT_ROTARY_DIRECTION_CLOCKWISE ? 1 : -1;
    static_cast<Counter*>(data)->OnRotaryDetent(step, info->time_stamp);
    return EINA_FALSE;
}

void DetentBare(benchmark::State& state)
{
    Evas_Object* object = evas_object_rectangle_add(evas_object_evas_get(Window()));
    Counter counter(object);
    eext_rotary_object_event_callback_priority_add(object, EVAS_CALLBACK_PRIORITY_BEFORE,
                                                   BareDetentCB, &counter);
    eext_rotary_object_event_activated_set(object, EINA_TRUE);
    while (state.KeepRunningBatch(kDetents))
        TurnWheel();
    evas_object_del(object);
}
BENCHMARK(DetentBare)->Name("detent/bare");

void Detent(benchmark::State& state)
{
    Evas_Object* object = evas_object_rectangle_add(evas_object_evas_get(Window()));
    Counter counter(object);
    auto* manager = QivoUi::RotaryEventManager::GetInstance();
    manager->RegisterEventListener(&counter);
    while (state.KeepRunningBatch(kDetents))
        TurnWheel();
    manager->UnRegisterEventListener(&counter);
    evas_object_del(object);
}
BENCHMARK(Detent)->Name("detent");

// DLOG_LEVEL decides which of the two is measured.
void LogLine(benchmark::State& state)
{
    for (auto _ : state)
        QIVO_LOG_INFO("operation:[%s]", "default");
}
BENCHMARK(LogLine)->Name("log_line");
} // namespace

// The application's object with its own main is not linked.
int main(int argc, char** argv)
{
    setenv("ELM_ENGINE", "buffer", 1);
    ecore_app_no_system_modules();
    efreet_cache_disable();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
