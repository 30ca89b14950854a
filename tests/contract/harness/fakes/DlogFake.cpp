#include "harness/PlatformState.h"
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <dlog.h>

namespace Platform
{

namespace
{

// The class of a log line, from its priority and its escape together.
const char* ClassOf(int priority, const std::string& format)
{
    static const struct
    {
        int priority;
        const char* beginning;
        const char* name;
    } kClasses[] = {
        {DLOG_ERROR, "%s: %s(%d) > \033[0;40;31m", "error"},
        {DLOG_WARN, "%s: %s(%d) > \033[1;40;33m", "warn"},
        {DLOG_INFO, "%s: %s(%d) > \033[1;35m ###\033[0;m", "mark"},
        {DLOG_INFO, "%s: %s(%d) > \033[1;35m", "info"},
        {DLOG_INFO, "%s: %s(%d) > \033[1;40;34m BEGIN >>>>\033[0;m", "begin"},
        {DLOG_INFO, "%s: %s(%d) > \033[1;40;34m END <<<<\033[0;m", "end"},
    };
    for (const auto& logClass : kClasses)
    {
        if (priority == logClass.priority &&
            format.compare(0, std::strlen(logClass.beginning), logClass.beginning) == 0)
        {
            return logClass.name;
        }
    }
    return "unknown";
}

// The message between the escape and the reset, with its arguments filled in.
std::string MessageOf(const std::string& line)
{
    const std::size_t escape = line.find('\033');
    const std::size_t begin = line.find('m', escape) + 1;
    const std::string reset = "\033[0;m";
    const std::size_t end = line.rfind(reset);
    const bool isWhole = end != std::string::npos && end + reset.size() == line.size();
    return isWhole ? line.substr(begin, end - begin) : "not reset: " + line;
}

void RecordLogLine(const LogLine& log)
{
    const std::string logClass = ClassOf(log.priority, log.format);
    std::string line = logClass + "(" + log.function + ")";
    if (logClass != "mark" && logClass != "begin" && logClass != "end")
    {
        line += " " + log.text;
    }
    Recorder::Add(line);
}

} // namespace

} // namespace Platform

using Platform::sState;

extern "C" {

int __dlog_print(log_id_t buffer, int priority, const char* tag, const char* format, ...)
{
    const Allocations::Pause pause;
    va_list arguments;
    va_start(arguments, format);
    va_list prefix;
    va_copy(prefix, arguments);
    const char* file = va_arg(prefix, const char*);
    const char* function = va_arg(prefix, const char*);
    const int line = va_arg(prefix, int);
    va_end(prefix);
    char whole[4096];
    vsnprintf(whole, sizeof(whole), format, arguments);
    va_end(arguments);
    sState.logLines.push_back({static_cast<int>(buffer), priority, tag, format, file, function,
                               line, Platform::MessageOf(whole)});
    Platform::RecordLogLine(sState.logLines.back());
    return Platform::Result("__dlog_print");
}

} // extern "C"
