#include "dlog/JournalEntry.h"

#include "dlog/Printable.h"
#include "dlog/dlog.h"

#include <cstdint>

namespace
{
// A value with a line feed goes with its length, as eight bytes, the lowest first.
void AppendField(std::string& entry, std::string_view name, std::string_view value)
{
    entry += name;
    if (value.find('\n') == std::string_view::npos)
        entry += '=';
    else
    {
        entry += '\n';
        for (unsigned shift = 0; shift < 64; shift += 8)
            entry += static_cast<char>(static_cast<std::uint64_t>(value.size()) >> shift & 0xff);
    }
    entry += value;
    entry += '\n';
}

std::string PrintableLines(std::string_view text)
{
    std::string lines;
    for (;;)
    {
        const size_t end = text.find('\n');
        lines += Printable(text.substr(0, end), Colours::Strip);
        if (end == std::string_view::npos)
            return lines;
        lines += '\n';
        text.remove_prefix(end + 1);
    }
}
} // namespace

std::string FormatJournalEntry(int priority, std::string_view tag, std::string_view text,
                               const CallSite& site)
{
    std::string entry;
    AppendField(entry, "MESSAGE", PrintableLines(text));
    AppendField(entry, "PRIORITY", std::string(1, "7643"[priority - DLOG_DEBUG]));
    if (!tag.empty())
        AppendField(entry, "SYSLOG_IDENTIFIER", Printable(tag));
    if (site.file != nullptr)
    {
        AppendField(entry, "CODE_FILE", Printable(site.file));
        AppendField(entry, "CODE_FUNC", Printable(site.function));
        AppendField(entry, "CODE_LINE", std::to_string(site.line));
    }
    return entry;
}
