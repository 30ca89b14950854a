#ifndef WATCH_PORT_DLOG_H
#define WATCH_PORT_DLOG_H

#ifdef __cplusplus
extern "C" {
#endif

typedef enum
{
    LOG_ID_MAIN = 0,
} log_id_t;

typedef enum
{
    DLOG_DEBUG = 3,
    DLOG_INFO = 4,
    DLOG_WARN = 5,
    DLOG_ERROR = 6,
} log_priority;

int __dlog_print(log_id_t log_id, int priority, const char* tag, const char* format, ...)
    __attribute__((format(printf, 4, 5)));

#ifdef __cplusplus
}
#endif

#endif
