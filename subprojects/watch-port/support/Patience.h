#ifndef WATCH_PORT_SUPPORT_PATIENCE_H
#define WATCH_PORT_SUPPORT_PATIENCE_H

#include <chrono>
#include <future>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

/**
 * Calls a function that may never return, such as one that connects to a server, and waits for it
 * no longer than a patience.
 *
 * The function runs on a thread of its own, which is left behind when it is late: it may use only
 * what it owns, and what it returns must release itself, for a late result is destroyed there.
 *
 * @return Nothing when the function was late, or no thread could be had.
 */
template <typename Work>
auto CallWithPatience(std::chrono::milliseconds patience, Work work)
    -> std::optional<decltype(work())>
try
{
    std::packaged_task<decltype(work())()> task(std::move(work));
    auto result = task.get_future();
    std::thread(std::move(task)).detach();
    if (result.wait_for(patience) != std::future_status::ready)
        return std::nullopt;
    return result.get();
}
catch (const std::system_error&)
{
    return std::nullopt;
}

#endif
