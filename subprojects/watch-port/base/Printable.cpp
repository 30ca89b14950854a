#include "base/Printable.h"

#include "base/Utf8.h"

#include <algorithm>

namespace WatchPort
{

namespace
{
constexpr char kReset[] = "\033[0;m";
constexpr size_t kMostQuoted = 64;

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

bool IsInsideOfCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xc0) == 0x80;
}

// The length of the printable ASCII at the text's start; nearly all of a log is that.
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
            length = Utf8CharacterLength(text);
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

std::string Quoted(std::string_view text)
{
    if (text.size() <= kMostQuoted)
        return '"' + Printable(text) + '"';
    size_t end = kMostQuoted;
    while (end > kMostQuoted - 3 && IsInsideOfCharacter(text[end]))
        --end;
    return '"' + Printable(text.substr(0, end)) + "...\"";
}

} // namespace WatchPort
