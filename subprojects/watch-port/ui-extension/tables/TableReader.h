#ifndef WATCH_PORT_UI_EXTENSION_TABLE_READER_H
#define WATCH_PORT_UI_EXTENSION_TABLE_READER_H

#include "ui-extension/tables/TableEntry.h"

#include <optional>
#include <vector>

namespace WatchPort
{

/** The names of the elements in a kind of table. */
struct TableFormat
{
    const char* root;
    const char* entry;
};

/**
 * Reads all entries of a table file in order. Elements that do not belong there and XML that breaks
 * off are one log line each, and the entries found are returned. Returns nothing, with one log
 * line, when the file is not such a table at all.
 */
std::optional<std::vector<TableEntry>> ReadTable(const char* path, const TableFormat& format);

} // namespace WatchPort

#endif
