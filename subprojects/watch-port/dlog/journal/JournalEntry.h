#ifndef WATCH_PORT_DLOG_JOURNAL_JOURNAL_ENTRY_H
#define WATCH_PORT_DLOG_JOURNAL_JOURNAL_ENTRY_H

#include "base/TextBuffer.h"
#include "dlog/CallSite.h"

#include <string_view>

namespace WatchPort
{

/**
 * Appends a line of the log as an entry in the journal's native form: MESSAGE, PRIORITY as syslog
 * counts it, SYSLOG_IDENTIFIER for a tag that is not empty (without one the journal shows the
 * program's name), and CODE_FILE, CODE_FUNC, CODE_LINE where the call site is known.
 *
 * The message keeps its line feeds; the journal shows them as lines of the same entry. Colour
 * escapes are left out. Other control characters and bytes that are not UTF-8 become "\x07": for
 * one of them journalctl would hide the whole message. No content can start another field.
 *
 * @param priority A log_priority.
 */
void AppendJournalEntry(TextBuffer& out, int priority, std::string_view tag, std::string_view text,
                        const CallSite& site);

} // namespace WatchPort

#endif
