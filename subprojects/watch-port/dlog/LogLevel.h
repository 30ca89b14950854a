#ifndef WATCH_PORT_DLOG_LOG_LEVEL_H
#define WATCH_PORT_DLOG_LOG_LEVEL_H

#include <optional>
#include <string_view>

namespace WatchPort
{

/** Above every priority: all lines are dropped. */
constexpr int kSilent = 7;

/**
 * Returns the lowest priority that is written at a value of DLOG_LEVEL, kSilent for none; nothing
 * for a value that is not a level.
 */
std::optional<int> ParseLogLevel(std::string_view value);

} // namespace WatchPort

#endif
