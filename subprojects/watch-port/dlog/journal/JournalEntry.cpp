#include "dlog/journal/JournalEntry.h"

#include "base/Printable.h"
#include <dlog.h>

#include <charconv>
#include <cstdint>

namespace WatchPort
{

namespace
{
constexpr std::string_view kNoLength("\0\0\0\0\0\0\0\0", 8);

void AppendField(TextBuffer& entry, std::string_view name, std::string_view value)
{
    entry.Append(name);
    entry.Append('=');
    AppendPrintable(entry, value);
    entry.Append('\n');
}

void AppendNumber(TextBuffer& entry, std::string_view name, int number)
{
    char digits[16];
    const char* end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    AppendField(entry, name, {digits, static_cast<size_t>(end - digits)});
}

void AppendLines(TextBuffer& entry, std::string_view text)
{
    for (;;)
    {
        const size_t end = text.find('\n');
        AppendPrintable(entry, text.substr(0, end), Colours::Strip);
        entry.Append('\n');
        if (end == std::string_view::npos)
            return;
        text.remove_prefix(end + 1);
    }
}

// A value with a line feed is sent with its length as eight bytes, the lowest first.
void SetLength(TextBuffer& entry, size_t position, std::uint64_t length)
{
    char bytes[kNoLength.size()];
    for (char& byte : bytes)
    {
        byte = static_cast<char>(length & 0xff);
        length >>= 8;
    }
    entry.Overwrite(position, {bytes, sizeof bytes});
}

void AppendMessage(TextBuffer& entry, std::string_view text)
{
    const bool isOneLine = text.find('\n') == std::string_view::npos;
    entry.Append(isOneLine ? "MESSAGE=" : "MESSAGE\n");
    const size_t position = entry.View().size();
    if (!isOneLine)
        entry.Append(kNoLength);
    const size_t begin = entry.View().size();
    AppendLines(entry, text);
    if (!isOneLine)
        SetLength(entry, position, entry.View().size() - begin - 1);
}
} // namespace

void AppendJournalEntry(TextBuffer& out, int priority, std::string_view tag, std::string_view text,
                        const CallSite& site)
{
    AppendMessage(out, text);
    AppendField(out, "PRIORITY", {&"7643"[priority - DLOG_DEBUG], 1});
    if (!tag.empty())
        AppendField(out, "SYSLOG_IDENTIFIER", tag);
    if (site.file)
    {
        AppendField(out, "CODE_FILE", site.file);
        AppendField(out, "CODE_FUNC", site.function);
        AppendNumber(out, "CODE_LINE", site.line);
    }
}

} // namespace WatchPort
