#include "dlog/LogLine.h"

#include <dlog.h>

namespace WatchPort
{

namespace
{
void PutDigits(char* place, int value, int places)
{
    for (; places > 0; value /= 10)
        place[--places] = static_cast<char>('0' + value % 10);
}

// Lines come in bursts, so a second's local time is kept until the next second.
const tm& LocalTime(time_t second)
{
    thread_local time_t sSecond = -1;
    thread_local tm sLocal;
    if (second != sSecond)
        localtime_r(&second, &sLocal);
    sSecond = second;
    return sLocal;
}

void AppendHead(TextBuffer& out, const timespec& now, int priority)
{
    char head[] = "HH:MM:SS.mmm P ";
    const tm& local = LocalTime(now.tv_sec);
    PutDigits(head, local.tm_hour, 2);
    PutDigits(head + 3, local.tm_min, 2);
    PutDigits(head + 6, local.tm_sec, 2);
    PutDigits(head + 9, static_cast<int>(now.tv_nsec / 1000000), 3);
    head[13] = "DIWE"[priority - DLOG_DEBUG];
    out.Append({head, sizeof head - 1});
}
} // namespace

void AppendLogLine(TextBuffer& out, const timespec& now, int priority, std::string_view tag,
                   std::string_view text, Colours colours)
{
    AppendHead(out, now, priority);
    AppendPrintable(out, tag.empty() ? "-" : tag);
    out.Append(": ");
    AppendPrintable(out, text, colours);
    out.Append('\n');
}

} // namespace WatchPort
