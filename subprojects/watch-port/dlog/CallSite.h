#ifndef WATCH_PORT_DLOG_CALL_SITE_H
#define WATCH_PORT_DLOG_CALL_SITE_H

#include <cstdarg>

namespace WatchPort
{

/** Where in a program a line of the log was written. */
struct CallSite
{
    const char* file = nullptr; /**< Null: nothing is known. */
    const char* function = nullptr;
    int line = 0;
};

/**
 * Returns the place that the first arguments name if the format begins with exactly
 * "%s: %s(%d) > ", the form that applications of the watch use. Otherwise, or if a name is null,
 * nothing is known.
 *
 * @param arguments The caller's own copy, which is consumed.
 */
CallSite ReadCallSite(const char* format, va_list arguments);

} // namespace WatchPort

#endif
