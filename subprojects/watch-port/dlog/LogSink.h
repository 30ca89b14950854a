#ifndef WATCH_PORT_DLOG_LOG_SINK_H
#define WATCH_PORT_DLOG_LOG_SINK_H

#include <string_view>
#include <sys/stat.h>

namespace WatchPort
{

/**
 * The standard error stream. It is checked for each line, as a program may replace it at any time.
 * Writing never waits longer than 100 ms for a sleeping reader.
 */
class LogSink
{
public:
    LogSink();

    /** Whether the stream is a terminal that shows colours. */
    bool IsTerminal() const;

    /** Whether the journal reads the stream. */
    bool IsJournal() const;

    /** Writes the line with one write(2); returns whether the stream took all of it. */
    bool Write(std::string_view line) const;

private:
    bool WriteWithoutWaiting(std::string_view line) const;

    struct statx mStatus = {};
};

} // namespace WatchPort

#endif
