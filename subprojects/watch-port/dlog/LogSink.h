#ifndef WATCH_PORT_DLOG_LOG_SINK_H
#define WATCH_PORT_DLOG_LOG_SINK_H

#include <string_view>
#include <sys/stat.h>

namespace WatchPort
{

/**
 * The standard error stream, looked at anew for each line: a program may put another file in its
 * place at any time. Writing never waits for a sleeping reader for longer than 100 ms.
 */
class LogSink
{
public:
    LogSink();

    /** Tells whether somebody sees the colours. */
    bool IsTerminal() const;

    /** Tells whether the journal reads the stream. */
    bool IsJournal() const;

    /** Writes the line with one write(2); returns whether the stream took all of it. */
    bool Write(std::string_view line) const;

private:
    bool WriteWithoutWaiting(std::string_view line) const;

    struct statx mStatus = {};
};

} // namespace WatchPort

#endif
