#ifndef WATCH_PORT_DLOG_PORT_LOG_H
#define WATCH_PORT_DLOG_PORT_LOG_H

#include <dlog.h>

/** The port's own lines in the application's log: a format text and its arguments. */
#define PORT_LOG(priority, ...) __dlog_print(LOG_ID_MAIN, priority, "WATCH_PORT", __VA_ARGS__)
#define PORT_LOG_ERROR(...) PORT_LOG(DLOG_ERROR, __VA_ARGS__)
#define PORT_LOG_WARN(...) PORT_LOG(DLOG_WARN, __VA_ARGS__)
#define PORT_LOG_INFO(...) PORT_LOG(DLOG_INFO, __VA_ARGS__)

#endif
