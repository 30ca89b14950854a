#ifndef QIVO_UI_COMMON_LOG_H
#define QIVO_UI_COMMON_LOG_H

#include <cstddef>
#include <dlog.h>
#include <type_traits>

/**
 * The one way to write diagnostics: six macros onto the watch's log service.
 *
 * Every line is a single call of __dlog_print() on the main buffer under the tag "QIVOUI_GUIDE".
 * It reads "FILE: FUNCTION(LINE) > " and then the text in the colour of its class. The escapes
 * are literals of the format, so nothing is formatted or allocated before the call; the result
 * of the call is ignored, a log line must never change what the program does.
 *
 * `text` is a string literal and may hold printf placeholders for the arguments after it.
 */

namespace QivoUi
{

/** Where the base name starts in a source path; the directories never reach the log. */
constexpr std::size_t LogBaseNameOffset(const char* path)
{
    std::size_t offset = 0;
    for (std::size_t i = 0; path[i] != '\0'; ++i)
    {
        if (path[i] == '/')
        {
            offset = i + 1;
        }
    }
    return offset;
}

} // namespace QivoUi

// As a template argument the offset cannot but be computed by the compiler.
#define QIVO_LOG_FILE                                                                              \
    (&__FILE__[std::integral_constant<std::size_t, QivoUi::LogBaseNameOffset(__FILE__)>::value])

#define QIVO_LOG_PRINT(priority, color, text, ...)                                                 \
    __dlog_print(LOG_ID_MAIN, priority, "QIVOUI_GUIDE", "%s: %s(%d) > " color text "\033[0;m",     \
                 QIVO_LOG_FILE, __func__, __LINE__, ##__VA_ARGS__)

/** A failure: a widget not made, a call of the watch that failed, a null argument. Red. */
#define QIVO_LOG_ERROR(text, ...) QIVO_LOG_PRINT(DLOG_ERROR, "\033[0;40;31m", text, ##__VA_ARGS__)

/** Unexpected, but borne. Bold yellow. */
#define QIVO_LOG_WARN(text, ...) QIVO_LOG_PRINT(DLOG_WARN, "\033[1;40;33m", text, ##__VA_ARGS__)

/** What is going on. Bold magenta. */
#define QIVO_LOG_INFO(text, ...) QIVO_LOG_PRINT(DLOG_INFO, "\033[1;35m", text, ##__VA_ARGS__)

/** Marks that a trampoline or a lifecycle hook was reached; a text behind the mark is optional. */
#define QIVO_LOG_MARK(...) QIVO_LOG_PRINT(DLOG_INFO, "\033[1;35m", " ###" __VA_ARGS__)

/** Entry to a function; QIVO_LOG_END() follows in the same one. Bold blue, text as a marker's. */
#define QIVO_LOG_BEGIN(...) QIVO_LOG_PRINT(DLOG_INFO, "\033[1;40;34m", " BEGIN >>>>" __VA_ARGS__)

/** Exit from a function that wrote QIVO_LOG_BEGIN(). */
#define QIVO_LOG_END(...) QIVO_LOG_PRINT(DLOG_INFO, "\033[1;40;34m", " END <<<<" __VA_ARGS__)

#endif
