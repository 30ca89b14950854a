#ifndef WATCH_PORT_DLOG_PORT_LOG_H
#define WATCH_PORT_DLOG_PORT_LOG_H

#include <dlog.h>

/** The port's own lines in the application's log: a format text and its arguments. */
#define PORT_LOG(priority, ...) __dlog_print(LOG_ID_MAIN, priority, "WATCH_PORT", __VA_ARGS__)
#define PORT_LOG_ERROR(...) PORT_LOG(DLOG_ERROR, __VA_ARGS__)
#define PORT_LOG_WARN(...) PORT_LOG(DLOG_WARN, __VA_ARGS__)
#define PORT_LOG_INFO(...) PORT_LOG(DLOG_INFO, __VA_ARGS__)

/**
 * Refuses a call of the watch's interface: logs one error line with the reason, and has the value
 * of the error to return. A macro, so that the compiler checks the arguments against the format.
 *
 * @param error The library's own negative value for the caller.
 * @param function The call's name, with which the line begins.
 * @param format What is wrong, the value, and what is accepted; a literal. Its arguments follow.
 */
#define PORT_REFUSE(error, function, format, ...)                                                  \
    (PORT_LOG_ERROR("%s: " format, function, ##__VA_ARGS__), (error))

#endif
