#include "base/Utf8.h"

namespace WatchPort
{

namespace
{
// The number of bytes in a sequence with this first byte; 0 if it cannot be a first byte.
size_t SequenceLength(unsigned char first)
{
    if (first < 0x80)
        return 1;
    if (first >= 0xc2 && first <= 0xdf)
        return 2;
    if (first >= 0xe0 && first <= 0xef)
        return 3;
    return first >= 0xf0 && first <= 0xf4 ? 4 : 0;
}

// The second byte shows overlong forms, surrogates and values above U+10FFFF.
bool IsSecondByte(unsigned char first, unsigned char second)
{
    const unsigned char lowest = first == 0xe0 ? 0xa0 : first == 0xf0 ? 0x90 : 0x80;
    const unsigned char highest = first == 0xed ? 0x9f : first == 0xf4 ? 0x8f : 0xbf;
    return second >= lowest && second <= highest;
}
} // namespace

size_t Utf8CharacterLength(std::string_view text)
{
    const auto byte = [text](size_t i) { return static_cast<unsigned char>(text[i]); };
    const size_t length = SequenceLength(byte(0));
    if (length > text.size() || (length > 1 && !IsSecondByte(byte(0), byte(1))))
        return 0;
    for (size_t i = 2; i < length; ++i)
    {
        if ((byte(i) & 0xc0) != 0x80)
            return 0;
    }
    return length;
}

bool IsUtf8(std::string_view text)
{
    while (!text.empty())
    {
        const size_t length = Utf8CharacterLength(text);
        if (length == 0)
            return false;
        text.remove_prefix(length);
    }
    return true;
}

} // namespace WatchPort
