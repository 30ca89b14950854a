#include <dlog.h>

#include "base/TextBuffer.h"
#include "dlog/CallSite.h"
#include "dlog/LogLevel.h"
#include "dlog/LogLine.h"
#include "dlog/LogSink.h"
#include "dlog/journal/Journal.h"
#include "dlog/journal/JournalEntry.h"

#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <ctime>

using namespace WatchPort;

namespace
{
int WriteLine(int priority, std::string_view tag, std::string_view text, const CallSite& site)
{
    const LogSink sink;
    if (sink.IsJournal())
    {
        TextBuffer entry;
        AppendJournalEntry(entry, priority, tag, text, site);
        if (entry.IsWhole() && SendToJournal(entry.View()))
            return static_cast<int>(entry.View().size());
    }
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    TextBuffer line;
    AppendLogLine(line, now, priority, tag, text,
                  sink.IsTerminal() ? Colours::Keep : Colours::Strip);
    if (!line.IsWhole())
        return DLOG_ERROR_OUT_OF_MEMORY;
    return sink.Write(line.View()) ? static_cast<int>(line.View().size()) : DLOG_ERROR_NOT_WRITTEN;
}

void ReportUnknownLevel(std::string_view value)
{
    TextBuffer text;
    text.Append("DLOG_LEVEL is \"");
    text.Append(value);
    text.Append(
        "\", which is not a level (debug, info, warn, error, silent): every line is written");
    WriteLine(DLOG_WARN, "WATCH_PORT", text.View(), CallSite());
}

int ReadLevel()
{
    const char* value = std::getenv("DLOG_LEVEL");
    if (!value || *value == '\0')
        return DLOG_DEBUG;
    const auto level = ParseLogLevel(value);
    if (!level)
        ReportUnknownLevel(value);
    return level.value_or(DLOG_DEBUG);
}

bool IsWanted(int priority)
{
    static const int lowest = ReadLevel();
    return priority >= lowest;
}

CallSite FindCallSite(const char* format, va_list arguments)
{
    va_list own;
    va_copy(own, arguments);
    const CallSite site = ReadCallSite(format, own);
    va_end(own);
    return site;
}

int Print(int priority, const char* tag, const char* format, va_list arguments)
{
    if (!IsWanted(priority))
        return 0;
    const CallSite site = FindCallSite(format, arguments);
    TextBuffer text;
    if (!text.AppendFormat(format, arguments))
        return DLOG_ERROR_BAD_FORMAT;
    if (!text.IsWhole())
        return DLOG_ERROR_OUT_OF_MEMORY;
    return WriteLine(priority, tag ? tag : "", text.View(), site);
}
} // namespace

// A caller in C may pass any number as a buffer.
__attribute__((no_sanitize("enum"))) int __dlog_print(log_id_t log_id, int priority,
                                                      const char* tag, const char* format, ...)
{
    if (log_id != LOG_ID_MAIN || priority < DLOG_DEBUG || priority > DLOG_ERROR || !format)
        return DLOG_ERROR_INVALID_PARAMETER;
    const int errnoBefore = errno;
    va_list arguments;
    va_start(arguments, format);
    const int result = Print(priority, tag, format, arguments);
    va_end(arguments);
    errno = errnoBefore;
    return result;
}
