#include "dlog/dlog.h"

#include "dlog/CallSite.h"
#include "dlog/Journal.h"
#include "dlog/JournalEntry.h"
#include "dlog/LogLevel.h"
#include "dlog/LogLine.h"
#include "dlog/LogSink.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>

namespace
{
int WriteLine(int priority, std::string_view tag, std::string_view text, const CallSite& site)
{
    const LogSink sink;
    if (sink.IsJournal())
    {
        const std::string entry = FormatJournalEntry(priority, tag, text, site);
        if (SendToJournal(entry))
            return static_cast<int>(entry.size());
    }
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    const std::string line =
        FormatLogLine(now, priority, tag, text, sink.IsTerminal() ? Colours::Keep : Colours::Strip);
    return sink.Write(line) ? static_cast<int>(line.size()) : DLOG_ERROR_NOT_WRITTEN;
}

int ReadLevel()
{
    const char* value = std::getenv("DLOG_LEVEL");
    if (value == nullptr || *value == '\0')
        return DLOG_DEBUG;
    const auto level = ParseLogLevel(value);
    if (!level)
        WriteLine(DLOG_WARN, "WATCH_PORT",
                  "DLOG_LEVEL is \"" + std::string(value) +
                      "\", which is no level (debug, info, warn, error, silent): "
                      "every line is written",
                  CallSite());
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
    const CallSite site = FindCallSite(format, arguments);
    char shortText[512];
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(shortText, sizeof shortText, format, arguments);
    std::string longText;
    if (length >= static_cast<int>(sizeof shortText))
    {
        longText.resize(static_cast<size_t>(length));
        std::vsnprintf(longText.data(), longText.size() + 1, format, again);
    }
    va_end(again);
    if (length < 0)
        return DLOG_ERROR_BAD_FORMAT;
    const std::string_view text(longText.empty() ? shortText : longText.data(),
                                static_cast<size_t>(length));
    return WriteLine(priority, tag == nullptr ? "" : tag, text, site);
}

int PrintIfWanted(int priority, const char* tag, const char* format, va_list arguments)
try
{
    return IsWanted(priority) ? Print(priority, tag, format, arguments) : 0;
}
catch (const std::bad_alloc&)
{
    return DLOG_ERROR_OUT_OF_MEMORY;
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
    const int result = PrintIfWanted(priority, tag, format, arguments);
    va_end(arguments);
    errno = errnoBefore;
    return result;
}
