#ifndef WATCH_PORT_UI_EXTENSION_TABLE_READER_H
#define WATCH_PORT_UI_EXTENSION_TABLE_READER_H

#include "ui-extension/TableEntry.h"

#include <optional>
#include <vector>

namespace WatchPort
{

/** The names of the elements that make up a kind of table. */
struct TableFormat
{
    const char* root;
    const char* entry;
};

/**
 * Reads all entries of a table file in their order. Elements that do not belong into the table and
 * XML that breaks off are one line in the log each, and the entries found are returned.
 * Nothing, with one line in the log, when the file is no such table as a whole.
 */
std::optional<std::vector<TableEntry>> ReadTable(const char* path, const TableFormat& format);

} // namespace WatchPort

#endif
