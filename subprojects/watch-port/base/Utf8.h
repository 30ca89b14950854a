#ifndef WATCH_PORT_BASE_UTF8_H
#define WATCH_PORT_BASE_UTF8_H

#include <cstddef>
#include <string_view>

namespace WatchPort
{

/**
 * Returns the length in bytes of the first character of the text; 0 if there is none: bytes that
 * are not UTF-8, an overlong form, a surrogate or a cut sequence.
 *
 * @param text Not empty.
 */
size_t Utf8CharacterLength(std::string_view text);

/** Whether all of the text is UTF-8. */
bool IsUtf8(std::string_view text);

} // namespace WatchPort

#endif
