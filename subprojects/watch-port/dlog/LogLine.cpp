#include "dlog/LogLine.h"

#include "dlog/dlog.h"

#include <cstdio>

std::string FormatLogLine(const timespec& now, int priority, std::string_view tag,
                          std::string_view text, Colours colours)
{
    tm local{};
    localtime_r(&now.tv_sec, &local);
    char head[64];
    const int length =
        std::snprintf(head, sizeof head, "%02d:%02d:%02d.%03ld %c ", local.tm_hour, local.tm_min,
                      local.tm_sec, now.tv_nsec / 1000000, "DIWE"[priority - DLOG_DEBUG]);
    std::string line(head, static_cast<size_t>(length));
    line += tag.empty() ? "-" : Printable(tag);
    line += ": ";
    line += Printable(text, colours);
    line += '\n';
    return line;
}
