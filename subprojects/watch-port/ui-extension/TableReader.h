#ifndef WATCH_PORT_UI_EXTENSION_TABLE_READER_H
#define WATCH_PORT_UI_EXTENSION_TABLE_READER_H

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace WatchPort
{

/// The names of the elements that make up a kind of table.
struct TableFormat
{
    const char* root;
    const char* entry;
};

/// One entry of a table file, with what is wrong with it written to the log as it is asked for.
class TableEntry
{
public:
    /// @param place file and line, for the log
    TableEntry(std::map<std::string, std::string> attributes, std::string place);

    /// The text of an attribute that must be there and hold 1 to 255 printable bytes, none of
    /// which is `forbidden`; nothing, with one line in the log, when it is not so.
    std::optional<std::string> Text(const char* name, char forbidden = '\0') const;
    /// The value of an attribute that must be there and be a whole number from `least` to `most`;
    /// nothing, with one line in the log, when it is not so.
    std::optional<int> Number(const char* name, int least, int most) const;
    /// Writes that an entry with the same id came before this one.
    void ReportDuplicate(const std::string& id) const;

private:
    const std::string* Find(const char* name) const;

    std::map<std::string, std::string> mAttributes;
    std::string mPlace;
};

/// Reads all entries of a table file in their order. Elements that do not belong into the table and
/// XML that breaks off are one line in the log each, and the entries found are returned.
/// Nothing, with one line in the log, when the file is no such table as a whole.
std::optional<std::vector<TableEntry>> ReadTable(const char* path, const TableFormat& format);

} // namespace WatchPort

#endif
