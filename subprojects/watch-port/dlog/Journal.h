#ifndef WATCH_PORT_DLOG_JOURNAL_H
#define WATCH_PORT_DLOG_JOURNAL_H

#include <string_view>
#include <sys/stat.h>

namespace WatchPort
{

/**
 * Tells whether a stream of this status leads to the journal: whether it is the one that the
 * environment variable JOURNAL_STREAM names as "device:inode". A service manager sets it, and a
 * program that is started with another stream inherits it, so the variable alone tells nothing.
 */
bool IsJournalStream(const struct statx& stream);

/**
 * Hands an entry in native form to the journal; returns whether it took it. Never waits: a journal
 * that is absent, gone or behind with its work takes nothing. An entry too long for a datagram goes
 * as a sealed file in memory.
 *
 * libsystemd's sd_journal_sendv() does neither: it waits for a journal that is behind without
 * end, and reports success where there is none.
 */
bool SendToJournal(std::string_view entry);

} // namespace WatchPort

#endif
