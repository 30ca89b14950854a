#ifndef WATCH_PORT_DLOG_LOG_LINE_H
#define WATCH_PORT_DLOG_LOG_LINE_H

#include "base/Printable.h"

#include <ctime>
#include <string_view>

namespace WatchPort
{

/**
 * Appends the finished line, with its line feed: "HH:MM:SS.mmm E TAG: text".
 *
 * @param now The wall clock's time; shown in the local time zone.
 * @param priority A log_priority.
 */
void AppendLogLine(TextBuffer& out, const timespec& now, int priority, std::string_view tag,
                   std::string_view text, Colours colours);

} // namespace WatchPort

#endif
