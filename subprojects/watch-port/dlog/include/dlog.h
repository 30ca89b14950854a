#ifndef WATCH_PORT_DLOG_H
#define WATCH_PORT_DLOG_H

/**
 * The log service: one entry in the systemd journal for each call when the journal reads the
 * standard error stream (the environment variable JOURNAL_STREAM names it), otherwise one line on
 * that stream.
 *
 *     HH:MM:SS.mmm E TAG: text
 *
 * The time is local time, the letter the priority (D, I, W, E).
 *
 * In the journal the text is MESSAGE, the priority PRIORITY (7, 6, 4, 3), the tag
 * SYSLOG_IDENTIFIER. A format that begins with exactly "%s: %s(%d) > " also fills CODE_FILE,
 * CODE_FUNC and CODE_LINE from its first three arguments.
 *
 * The environment variable DLOG_LEVEL drops what is below a level: "debug" (nothing is dropped,
 * the default), "info", "warn", "error", or "silent" (everything is dropped). It is read once,
 * at the first call. Another value is reported in one line, and nothing is dropped.
 */

#ifdef __cplusplus
extern "C" {
#endif

/** The log buffers of the watch; one is enough for an application. */
typedef enum
{
    LOG_ID_MAIN = 0, /**< The application's own log. */
} log_id_t;

/** The severity of a line, rising. */
typedef enum
{
    DLOG_DEBUG = 3, /**< For development. */
    DLOG_INFO = 4,  /**< What is going on. */
    DLOG_WARN = 5,  /**< Unexpected, but handled. */
    DLOG_ERROR = 6, /**< A step failed. */
} log_priority;

/** The negative results of __dlog_print(). */
typedef enum
{
    DLOG_ERROR_NONE = 0,
    DLOG_ERROR_INVALID_PARAMETER = -2, /**< Unknown buffer or priority, or no format. */
    DLOG_ERROR_BAD_FORMAT = -3,        /**< The C library could not expand the format. */
    DLOG_ERROR_NOT_WRITTEN = -4,       /**< The stream is closed, full, or its reader is gone, and
                                          the journal, if it reads the stream, accepted nothing. */
    DLOG_ERROR_OUT_OF_MEMORY = -5,     /**< For a text of about 1,000 bytes or more. */
} dlog_error_e;

/**
 * Writes one line to the log.
 *
 * It does not wait for a journal that is absent or too slow: the line goes to the stream then.
 *
 * The line reaches the stream with a single write(2), so lines of several processes do not mix.
 * A stream whose reader sleeps blocks a caller for 100 ms at most, and the following lines not at
 * all until it reads again; those lines are lost. A reader that is gone causes no signal. errno is
 * left as it was.
 *
 * Whatever the text contains, it stays one line: control characters and bytes that are not UTF-8
 * are written as "\x0a". The exception are colour escapes (ESC "[" digits and ";" "m"): they are
 * kept if the stream is a terminal, which gets its own colour back after the text, and left out
 * otherwise. The tag may hold no escape at all. The journal's message keeps its line feeds; no
 * content can add a field to the entry.
 *
 * A new-handler may call it: it does not use the heap, and a long text is in pages of its own. Any
 * thread may call it.
 *
 * @param log_id LOG_ID_MAIN.
 * @param priority A log_priority.
 * @param tag The source of the line. Null or empty: "-"; in the journal the program's name.
 * @param format As for printf, of any length when expanded.
 * @return The number of bytes written to the stream or the journal; 0 if DLOG_LEVEL drops the line
 *         (nothing is checked or formatted then); otherwise a negative dlog_error_e.
 */
int __dlog_print(log_id_t log_id, int priority, const char* tag, const char* format, ...)
    __attribute__((format(printf, 4, 5)));

#ifdef __cplusplus
}
#endif

#endif
