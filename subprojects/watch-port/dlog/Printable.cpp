#include "dlog/Printable.h"

#include <algorithm>

namespace WatchPort
{

namespace
{
constexpr char kReset[] = "\033[0;m";

// The number of bytes that the first byte of a sequence asks for; 0: it cannot be a first byte.
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

// Overlong forms, surrogates and values above U+10FFFF all show in the second byte.
bool IsSecondByte(unsigned char first, unsigned char second)
{
    const unsigned char lowest = first == 0xe0 ? 0xa0 : first == 0xf0 ? 0x90 : 0x80;
    const unsigned char highest = first == 0xed ? 0x9f : first == 0xf4 ? 0x8f : 0xbf;
    return second >= lowest && second <= highest;
}

// The length of the character that the text starts with; 0: it starts with no valid one.
size_t CharacterLength(std::string_view text)
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

bool IsControl(std::string_view character)
{
    const auto first = static_cast<unsigned char>(character[0]);
    if (first < 0x20 || first == 0x7f)
        return true;
    // U+0080 to U+009F are control characters too: a terminal may obey U+009B as ESC "[".
    if (first == 0xc2)
        return static_cast<unsigned char>(character[1]) < 0xa0;
    return character == "\u2028" || character == "\u2029";
}

// The length of what the text starts with that is printable ASCII, as nearly all of a log is.
size_t PlainLength(std::string_view text)
{
    const auto isPlain = [](char c) { return c >= 0x20 && c < 0x7f; };
    return static_cast<size_t>(std::find_if_not(text.begin(), text.end(), isPlain) - text.begin());
}

// The length of the colour escape that the text starts with, or 0.
size_t ColourLength(std::string_view text)
{
    if (text.substr(0, 2) != "\033[")
        return 0;
    const size_t end = text.find_first_not_of("0123456789;", 2);
    return end != std::string_view::npos && text[end] == 'm' ? end + 1 : 0;
}

void AppendEscaped(TextBuffer& out, std::string_view bytes)
{
    constexpr char kDigits[] = "0123456789abcdef";
    for (const unsigned char byte : bytes)
    {
        const char escaped[] = {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
        out.Append({escaped, sizeof escaped});
    }
}

void AppendCharacter(TextBuffer& out, std::string_view text, size_t length)
{
    const std::string_view character = text.substr(0, length == 0 ? 1 : length);
    if (length == 0 || IsControl(character))
        AppendEscaped(out, character);
    else
        out.Append(character);
}
} // namespace

void AppendPrintable(TextBuffer& out, std::string_view text, Colours colours)
{
    bool coloured = false;
    while (!text.empty())
    {
        const size_t plain = PlainLength(text);
        out.Append(text.substr(0, plain));
        text.remove_prefix(plain);
        if (text.empty())
            break;
        size_t length = colours == Colours::Escape ? 0 : ColourLength(text);
        if (length == 0)
        {
            length = CharacterLength(text);
            AppendCharacter(out, text, length);
        }
        else if (colours == Colours::Keep)
        {
            out.Append(text.substr(0, length));
            coloured = text.substr(0, length) != kReset;
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
    if (coloured)
        out.Append(kReset);
}

std::string Printable(std::string_view text, Colours colours)
{
    TextBuffer out;
    AppendPrintable(out, text, colours);
    return std::string(out.View());
}

bool IsUtf8(std::string_view text)
{
    while (!text.empty())
    {
        const size_t length = CharacterLength(text);
        if (length == 0)
            return false;
        text.remove_prefix(length);
    }
    return true;
}

} // namespace WatchPort
