#include "home/Home.h"

#include <Ecore_Input.h>
#include <cstdlib>
#include <ctime>

namespace
{
// Runs on while the machine sleeps, and is never set.
int64_t Now()
{
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
}

// An empty zone is the machine's, which the process has from its start.
void SetZone(const std::string& zone)
{
    if (zone.empty())
        return;
    setenv("TZ", zone.c_str(), 1);
    tzset();
}
} // namespace

Home::Home(const Options& options)
    : mControl([this](const WatchState& state, bool isTimeTold) { Show(state, isTimeTold); }),
      mWindow("qivo-watch-home", "Home", options.GetScreenSize()),
      mFace(mWindow.GetCanvas(), options.GetScreenSize(),
            [this](const std::string& id) { mControl.Launch(id.c_str()); }),
      mWheel(ecore_event_handler_add(ECORE_EVENT_MOUSE_WHEEL, SWheelCB, this))
{
    mClock.Set(int64_t{std::time(nullptr)} * 1000, Now());
    mWindow.OnDrawn([this] { mControl.OwnName("com.velmora.QivoWatch.Home"); });
}

Home::~Home()
{
    StopTimer();
    ecore_event_handler_del(mWheel);
}

void Home::Show(const WatchState& state, bool isTimeTold)
{
    const int64_t now = Now();
    if (state.isTimeFrozen != mClock.IsFrozen())
        mClock.Freeze(state.isTimeFrozen, now);
    if (isTimeTold)
        mClock.Set(state.time, now);
    SetZone(state.zone);
    mFace.Show(state);
    if (mIsScreenOn && !state.isScreenOn)
        mWindow.Raise();
    mIsScreenOn = state.isScreenOn;
    ShowTime();
    mWindow.Show();
}

void Home::ShowTime()
{
    StopTimer();
    const int64_t now = Now();
    mFace.ShowTime(HandsAt(mClock.GetTime(now)));
    if (mIsScreenOn && !mClock.IsFrozen())
        mTimer = ecore_timer_add(static_cast<double>(mClock.GetMillisecondsToMinute(now)) / 1000,
                                 SMinuteCB, this);
}

void Home::StopTimer()
{
    if (mTimer)
        ecore_timer_del(mTimer);
    mTimer = nullptr;
}

// The bezel is the mouse wheel, as for every application.
Eina_Bool Home::SWheelCB(void* data, int /*type*/, void* event)
{
    static_cast<Home*>(data)->mFace.Turn(static_cast<Ecore_Event_Mouse_Wheel*>(event)->z);
    return ECORE_CALLBACK_PASS_ON;
}

Eina_Bool Home::SMinuteCB(void* data)
{
    auto* home = static_cast<Home*>(data);
    home->mTimer = nullptr;
    home->ShowTime();
    return ECORE_CALLBACK_CANCEL;
}
