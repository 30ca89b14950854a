#include "application/display/DisplayWatch.h"

#include "dlog/PortLog.h"
#include <app.h>

#include <Ecore.h>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <ctime>
#include <optional>
#include <thread>
#include <unistd.h>

namespace WatchPort
{

namespace
{
using Clock = std::chrono::steady_clock;

// A turn that takes half a second has the server asked. It has 3.4 seconds to answer, and most
// of another one when they are over.
constexpr itimerspec kTurn = {{3, 400'000'000}, {0, 500'000'000}};
constexpr itimerspec kSleep = {};
constexpr std::chrono::milliseconds kAnswerPatience(3300);

// The rest is waited for in parts, of which a stop of the process takes up one at most. They are
// few: each lasts a little longer on a busy machine.
constexpr int kLastLooks = 18;
constexpr std::chrono::milliseconds kLook(50);

// Lives as long as the process, for a thread that hangs may look at it at any time.
struct Question
{
    const std::string server;
    const std::function<void()> ask;
    /** When it was asked; the zero of the clock while it is not. */
    std::atomic<Clock::time_point> since = Clock::time_point();
};

Question* sQuestion = nullptr;
std::optional<timer_t> sTimer;
Ecore_Select_Function sSelect = nullptr;

[[noreturn]] void EndProcess(const Question& question)
{
    PORT_LOG_ERROR("%s does not answer any more: the application ends", question.server.c_str());
    constexpr int kStatusMask = 0xFF;
    _exit(APP_ERROR_NO_DISPLAY & kStatusMask);
}

// A process that was stopped and goes on is late itself: the answer may be there to be read.
bool IsAnsweredAtLast(const Question& question, Clock::time_point since)
{
    for (int i = 0; i < kLastLooks && question.since.load() == since; ++i)
        std::this_thread::sleep_for(kLook);
    return question.since.load() != since;
}

void STurnTakesLongCB(sigval data)
{
    auto& question = *static_cast<Question*>(data.sival_ptr);
    Clock::time_point since;
    if (question.since.compare_exchange_strong(since, Clock::now()))
    {
        question.ask();
        question.since = Clock::time_point();
    }
    else if (Clock::now() - since >= kAnswerPatience && !IsAnsweredAtLast(question, since))
    {
        EndProcess(question);
    }
}

int SSelectCB(int count, fd_set* readable, fd_set* writable, fd_set* special, timeval* timeout)
{
    if (timeout && timeout->tv_sec == 0 && timeout->tv_usec == 0)
        return sSelect(count, readable, writable, special, timeout);
    timer_settime(*sTimer, 0, &kSleep, nullptr);
    const int ready = sSelect(count, readable, writable, special, timeout);
    const int error = errno;
    timer_settime(*sTimer, 0, &kTurn, nullptr);
    errno = error;
    return ready;
}
} // namespace

DisplayWatch::DisplayWatch(const std::string& server, std::function<void()> ask)
{
    ecore_init();
    sQuestion = new Question{server, std::move(ask)};
    sigevent event = {};
    event.sigev_notify = SIGEV_THREAD;
    event.sigev_value.sival_ptr = sQuestion;
    event.sigev_notify_function = STurnTakesLongCB;
    timer_t timer = nullptr;
    // Without one, where no thread can be had, the process does as well as any other.
    if (timer_create(CLOCK_MONOTONIC, &event, &timer) != 0)
        return;
    sTimer = timer;
    timer_settime(timer, 0, &kTurn, nullptr);
    sSelect = ecore_main_loop_select_func_get();
    ecore_main_loop_select_func_set(SSelectCB);
}

DisplayWatch::~DisplayWatch()
{
    if (sTimer)
    {
        ecore_main_loop_select_func_set(sSelect);
        timer_delete(*sTimer);
        sTimer.reset();
    }
    ecore_shutdown();
}

} // namespace WatchPort
