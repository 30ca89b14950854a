#include "ui-extension/tables/TableEntry.h"

#include "base/Printable.h"
#include "dlog/PortLog.h"

#include <algorithm>
#include <charconv>

namespace WatchPort
{

namespace
{

constexpr std::size_t kMaxTextLength = 255;

} // namespace

bool IsControl(char character)
{
    auto byte = static_cast<unsigned char>(character);
    return byte < 0x20 || byte == 0x7f;
}

void ReportAt(const std::string& place, int priority, const std::string& what)
{
    PORT_LOG(priority, "%s: %s", place.c_str(), what.c_str());
}

TableEntry::TableEntry(std::map<std::string, std::string> attributes, std::string place)
    : mAttributes(std::move(attributes)), mPlace(std::move(place))
{
}

const std::string* TableEntry::Find(const char* name) const
{
    auto found = mAttributes.find(name);
    if (found != mAttributes.end())
        return &found->second;
    ReportAt(mPlace, DLOG_ERROR, std::string("entry left out, attribute ") + name + " is missing");
    return nullptr;
}

std::optional<std::string> TableEntry::Text(const char* name, char forbidden) const
{
    const std::string* text = Find(name);
    if (!text)
        return std::nullopt;
    auto isBad = [forbidden](char c) { return IsControl(c) || c == forbidden; };
    if (!text->empty() && text->size() <= kMaxTextLength &&
        std::none_of(text->begin(), text->end(), isBad))
        return *text;

    ReportAt(mPlace, DLOG_ERROR,
             std::string("entry left out, ") + name + " is " + Quoted(*text) + " (must be 1 to " +
                 std::to_string(kMaxTextLength) + " printable bytes" +
                 (forbidden ? std::string(" without ") + forbidden : "") + ")");
    return std::nullopt;
}

std::optional<int> TableEntry::Number(const char* name, int least, int most) const
{
    const std::string* text = Find(name);
    if (!text)
        return std::nullopt;
    const char* end = text->data() + text->size();
    int value = 0;
    auto [parsed, error] = std::from_chars(text->data(), end, value);
    if (error == std::errc() && parsed == end && value >= least && value <= most)
        return value;

    ReportAt(mPlace, DLOG_ERROR,
             std::string("entry left out, ") + name + " is " + Quoted(*text) +
                 " (must be a whole number from " + std::to_string(least) + " to " +
                 std::to_string(most) + ")");
    return std::nullopt;
}

void TableEntry::ReportDuplicate(const std::string& id) const
{
    ReportAt(mPlace, DLOG_WARN, "repeated id " + Quoted(id) + " (the last entry counts)");
}

} // namespace WatchPort
