#include "dlog/LogLine.h"

#include "dlog/dlog.h"

namespace
{
// What never becomes longer stands beside the tag and the text: the time and the priority.
constexpr size_t kFixedLength = 32;

void AppendDigits(std::string& out, int value, int places)
{
    for (int unit = places == 3 ? 100 : 10; unit > 0; unit /= 10)
        out += static_cast<char>('0' + value / unit % 10);
}

// Lines come in bursts, and a second is longer than most: its local time is kept until the next.
const tm& LocalTime(time_t second)
{
    thread_local time_t sSecond = -1;
    thread_local tm sLocal;
    if (second != sSecond)
        localtime_r(&second, &sLocal);
    sSecond = second;
    return sLocal;
}

void AppendTime(std::string& line, const timespec& now)
{
    const tm& local = LocalTime(now.tv_sec);
    AppendDigits(line, local.tm_hour, 2);
    line += ':';
    AppendDigits(line, local.tm_min, 2);
    line += ':';
    AppendDigits(line, local.tm_sec, 2);
    line += '.';
    AppendDigits(line, static_cast<int>(now.tv_nsec / 1000000), 3);
}
} // namespace

std::string FormatLogLine(const timespec& now, int priority, std::string_view tag,
                          std::string_view text, Colours colours)
{
    std::string line;
    line.reserve(kFixedLength + tag.size() + text.size());
    AppendTime(line, now);
    line.append({' ', "DIWE"[priority - DLOG_DEBUG], ' '});
    AppendPrintable(line, tag.empty() ? "-" : tag);
    line += ": ";
    AppendPrintable(line, text, colours);
    line += '\n';
    return line;
}
