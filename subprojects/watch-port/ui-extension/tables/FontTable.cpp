#include "ui-extension/tables/FontTable.h"

#include "ui-extension/tables/TableReader.h"

#include <Edje.h>

#include <algorithm>

namespace WatchPort
{

namespace
{

constexpr int kMaxFontSize = 500;

// The toolkit writes a text class into a style, where a space ends a value. Font names mean the
// same with and without spaces.
std::string WithoutBlanks(std::string name)
{
    name.erase(std::remove(name.begin(), name.end(), ' '), name.end());
    return name;
}

} // namespace

bool FontTable::Load(const char* path)
{
    auto entries = ReadTable(path, {"FontTable", "Font"});
    if (!entries)
        return false;
    for (const TableEntry& entry : *entries)
    {
        // A colon would end the name within "NAME:style=STYLE".
        std::optional<std::string> id = entry.Text("id");
        std::optional<std::string> name = id ? entry.Text("name", ':') : std::nullopt;
        std::optional<std::string> style = name ? entry.Text("style", ':') : std::nullopt;
        std::optional<int> size = style ? entry.Number("size", 1, kMaxFontSize) : std::nullopt;
        if (!size)
            continue;
        Font font{WithoutBlanks(*name) + ":style=" + WithoutBlanks(*style), *size};
        if (!mFonts.insert_or_assign(*id, font).second)
            entry.ReportDuplicate(*id);
    }
    return true;
}

void FontTable::Apply(const TextSize& size) const
{
    for (const auto& [id, font] : mFonts)
        edje_text_class_set(id.c_str(), font.description.c_str(), size.Of(font.size));
}

void FontTable::TakeOff(const TextSize& size) const
{
    for (const auto& [id, font] : mFonts)
        edje_text_class_del(id.c_str());
    size.Publish();
}

} // namespace WatchPort
