#include "dlog/LogLevel.h"

#include <dlog.h>

#include <utility>

namespace WatchPort
{

std::optional<int> ParseLogLevel(std::string_view value)
{
    constexpr std::pair<std::string_view, int> kLevels[] = {{"debug", DLOG_DEBUG},
                                                            {"info", DLOG_INFO},
                                                            {"warn", DLOG_WARN},
                                                            {"error", DLOG_ERROR},
                                                            {"silent", kSilent}};
    for (const auto& [name, level] : kLevels)
    {
        if (value == name)
            return level;
    }
    return std::nullopt;
}

} // namespace WatchPort
