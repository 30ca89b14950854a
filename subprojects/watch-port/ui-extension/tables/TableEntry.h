#ifndef WATCH_PORT_UI_EXTENSION_TABLE_ENTRY_H
#define WATCH_PORT_UI_EXTENSION_TABLE_ENTRY_H

#include <map>
#include <optional>
#include <string>

namespace WatchPort
{

/** One entry of a table file. Reading a wrong attribute logs one line. */
class TableEntry
{
public:
    /** @param place file and line, for the log */
    TableEntry(std::map<std::string, std::string> attributes, std::string place);

    /**
     * The text of a required attribute: 1 to 255 printable bytes, none of which is `forbidden`.
     * Otherwise nothing, with one line in the log.
     */
    std::optional<std::string> Text(const char* name, char forbidden = '\0') const;
    /**
     * The value of a required attribute: a whole number from `least` to `most`. Otherwise nothing,
     * with one line in the log.
     */
    std::optional<int> Number(const char* name, int least, int most) const;
    /** Logs that an earlier entry has the same id. */
    void ReportDuplicate(const std::string& id) const;

private:
    const std::string* Find(const char* name) const;

    std::map<std::string, std::string> mAttributes;
    std::string mPlace;
};

/** Logs a line about a place in a file, with a priority of the log service. */
void ReportAt(const std::string& place, int priority, const std::string& what);
/** Whether a byte is a control character of ASCII. */
bool IsControl(char character);

} // namespace WatchPort

#endif
