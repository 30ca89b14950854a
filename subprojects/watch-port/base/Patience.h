#ifndef WATCH_PORT_BASE_PATIENCE_H
#define WATCH_PORT_BASE_PATIENCE_H

#include "base/Termination.h"

#include <algorithm>
#include <chrono>
#include <future>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

namespace WatchPort
{

/**
 * Calls a function that may never return, such as one that connects to a server, and waits for it
 * for a limited time. A signal that ends the application ends the wait too.
 *
 * The function runs on a thread of its own, which is abandoned when it is late. So it may use only
 * what it owns, and its result must release itself: a late one is destroyed on that thread.
 *
 * @return Nothing if the function was late, the signal came, or no thread could be started.
 */
template <typename Work>
auto CallWithPatience(std::chrono::milliseconds patience, Work work)
    -> std::optional<decltype(work())>
try
{
    using Clock = std::chrono::steady_clock;
    const Clock::time_point deadline = Clock::now() + patience;
    // Before the thread starts, so that it does not receive the signals.
    const Termination termination;
    std::packaged_task<decltype(work())()> task(std::move(work));
    auto result = task.get_future();
    std::thread(std::move(task)).detach();
    while (Clock::now() < deadline && !termination.HasCome())
    {
        const Clock::time_point look =
            Clock::now() + std::chrono::milliseconds(Termination::kLookMilliseconds);
        if (result.wait_until(std::min(look, deadline)) == std::future_status::ready)
            return result.get();
    }
    return std::nullopt;
}
catch (const std::system_error&)
{
    return std::nullopt;
}

} // namespace WatchPort

#endif
