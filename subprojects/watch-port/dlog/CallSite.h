#ifndef WATCH_PORT_DLOG_CALL_SITE_H
#define WATCH_PORT_DLOG_CALL_SITE_H

#include <cstdarg>

namespace WatchPort
{

/** Where in a program a line of the log was written. */
struct CallSite
{
    const char* file = nullptr; /**< Null: not known, and nothing else is either. */
    const char* function = nullptr;
    int line = 0;
};

/**
 * Returns the place that the first arguments name when the format begins with exactly
 * "%s: %s(%d) > ", the form in which applications of the watch name it; otherwise none, also when
 * one of the names is null.
 *
 * @param arguments The caller's own copy: what has been read of it is not put back.
 */
CallSite ReadCallSite(const char* format, va_list arguments);

} // namespace WatchPort

#endif
