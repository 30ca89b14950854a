#ifndef WATCH_PORT_BASE_PRINTABLE_H
#define WATCH_PORT_BASE_PRINTABLE_H

#include "base/TextBuffer.h"

#include <string>
#include <string_view>

namespace WatchPort
{

/** What to do with the colour escapes (ESC "[" digits and ";" "m") of a text. */
enum class Colours
{
    Keep,   /**< Written; when there were any, the terminal's own colour is set at the end. */
    Strip,  /**< Left out. */
    Escape, /**< Made visible, as any other control character. */
};

/**
 * Returns the text in a form that is safe within one line of a terminal or a log: control
 * characters, the line and paragraph separators, and bytes that are not UTF-8 become "\x0a".
 */
std::string Printable(std::string_view text, Colours colours = Colours::Escape);

/** Appends the printable form of the text. */
void AppendPrintable(TextBuffer& out, std::string_view text, Colours colours = Colours::Escape);

/**
 * Returns the printable form of the text in quotation marks, for a message. After 64 bytes the rest
 * is "...": text from outside may have any length.
 */
std::string Quoted(std::string_view text);

} // namespace WatchPort

#endif
