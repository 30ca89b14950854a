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

/** How grave a line is, rising. */
typedef enum
{
    DLOG_DEBUG = 3, /**< For the developer at work. */
    DLOG_INFO = 4,  /**< The normal course. */
    DLOG_WARN = 5,  /**< Unexpected but borne. */
    DLOG_ERROR = 6, /**< A step failed. */
} log_priority;

/** The negative results of __dlog_print(). */
typedef enum
{
    DLOG_ERROR_NONE = 0,
    DLOG_ERROR_INVALID_PARAMETER = -2, /**< Unknown buffer or priority, or no format. */
    DLOG_ERROR_BAD_FORMAT = -3,        /**< The C library could not expand the format. */
    DLOG_ERROR_NOT_WRITTEN = -4,       /**< The stream is closed, full, or its reader is gone; the
                                          journal, if it reads the stream, took nothing either. */
    DLOG_ERROR_OUT_OF_MEMORY = -5,     /**< No pages for a text of some 1,000 bytes or more. */
} dlog_error_e;

/**
 * Writes one line to the log.
 *
 * A journal that is absent or behind with its work is not waited for: the line goes to the stream.
 *
 * The line reaches the stream with a single write(2), so lines of several processes do not mix.
 * A stream that takes nothing (its reader sleeps) holds a caller up for 100 ms at most, and
 * the lines that follow not at all until it takes something again; such a line is lost.
 * No signal comes from a reader that is gone, and errno is left as it was.
 *
 * Whatever the text contains, it stays one line: control characters and bytes that are not UTF-8
 * are written as "\x0a". The one exception are colour escapes (ESC "[" digits and ";" "m"):
 * they are kept when the stream is a terminal, which is then set back to its own colour after
 * the text, and left out otherwise. The tag may hold no escape at all. The journal's message keeps
 * its line feeds; no content can make another field of the entry.
 *
 * May be called by a new-handler: nothing is taken from the heap. A long text stands in pages of
 * its own meanwhile. May be called by any thread.
 *
 * @param log_id LOG_ID_MAIN.
 * @param priority A log_priority.
 * @param tag Who speaks. Null or empty: "-"; in the journal the program's name.
 * @param format As for printf, of any length when expanded.
 * @return The number of bytes written to the stream or the journal; 0 when DLOG_LEVEL drops the
 * line (then nothing is looked at or formatted); otherwise a negative dlog_error_e.
 */
int __dlog_print(log_id_t log_id, int priority, const char* tag, const char* format, ...)
    __attribute__((format(printf, 4, 5)));

#ifdef __cplusplus
}
#endif

#endif
