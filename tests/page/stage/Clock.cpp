#include "page/stage/Clock.h"

#include <Ecore.h>

#include <cmath>
#include <ctime>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

constexpr int kFramesPerSecond = 60;
constexpr long kNanoseconds = 1000000000;
// The toolkit puts off some work to a later turn of its loop, and that some more.
constexpr int kTurns = 8;

// The toolkit's own threads wait in real time.
thread_local bool tIsTakenOver = false;
timespec gNow{};

void DrawFrameAfter(long nanoseconds)
{
    // A new window takes the ticks back.
    ecore_animator_source_set(ECORE_ANIMATOR_SOURCE_CUSTOM);
    gNow.tv_nsec += nanoseconds;
    gNow.tv_sec += gNow.tv_nsec / kNanoseconds;
    gNow.tv_nsec %= kNanoseconds;
    ecore_main_loop_iterate();
    ecore_animator_custom_tick();
}

} // namespace

// Stands before the C library's own for the toolkit too.
extern "C" int clock_gettime(clockid_t clock, timespec* now) noexcept
{
    if (!tIsTakenOver || clock != CLOCK_MONOTONIC)
        return static_cast<int>(syscall(SYS_clock_gettime, clock, now));
    *now = gNow;
    return 0;
}

void Clock::TakeOver()
{
    clock_gettime(CLOCK_MONOTONIC, &gNow);
    tIsTakenOver = true;
}

void Clock::Flush()
{
    for (int turn = 0; turn < kTurns; ++turn)
        ecore_main_loop_iterate();
}

void Clock::Advance(double seconds)
{
    for (long frame = std::lround(seconds * kFramesPerSecond); frame > 0; --frame)
        DrawFrameAfter(kNanoseconds / kFramesPerSecond);
    Flush();
}

void Clock::Skip()
{
    DrawFrameAfter(kNanoseconds);
    Flush();
}
