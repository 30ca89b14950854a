#ifndef WATCH_PORT_DLOG_JOURNAL_JOURNAL_H
#define WATCH_PORT_DLOG_JOURNAL_JOURNAL_H

#include <string_view>
#include <sys/stat.h>

namespace WatchPort
{

/**
 * Whether a stream with this status leads to the journal: whether the environment variable
 * JOURNAL_STREAM names it as "device:inode". A service manager sets the variable, and programs that
 * are started with another stream inherit it, so the variable alone is not enough.
 */
bool IsJournalStream(const struct statx& stream);

/**
 * Sends an entry in native form to the journal; returns whether the journal accepted it. Never
 * waits: a journal that is absent, gone or too slow accepts nothing. An entry too long for a
 * datagram is sent as a sealed memory file.
 *
 * libsystemd's sd_journal_sendv() waits without end for a journal that is too slow, and reports
 * success if there is no journal.
 */
bool SendToJournal(std::string_view entry);

} // namespace WatchPort

#endif
