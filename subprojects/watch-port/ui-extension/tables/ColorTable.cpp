#include "ui-extension/tables/ColorTable.h"

#include "ui-extension/tables/TableReader.h"

#include <Edje.h>

namespace WatchPort
{

namespace
{

std::optional<Color> ReadColor(const TableEntry& entry)
{
    Color color{};
    for (auto [name, channel] : {std::pair("r", &color.r), std::pair("g", &color.g),
                                 std::pair("b", &color.b), std::pair("a", &color.a)})
    {
        std::optional<int> value = entry.Number(name, 0, 255);
        if (!value)
            return std::nullopt;
        *channel = *value;
    }
    return color;
}

} // namespace

bool ColorTable::Load(const char* path)
{
    auto entries = ReadTable(path, {"ColorTable", "Color"});
    if (!entries)
        return false;
    for (const TableEntry& entry : *entries)
    {
        std::optional<std::string> id = entry.Text("id");
        std::optional<Color> color = id ? ReadColor(entry) : std::nullopt;
        if (color && !mColors.insert_or_assign(*id, *color).second)
            entry.ReportDuplicate(*id);
    }
    return true;
}

void ColorTable::Apply(Contrast contrast) const
{
    // Classes multiply, so opaque white keeps the theme's colours for a text's outline and shadow.
    for (const auto& [id, plain] : mColors)
    {
        const Color color = WithContrast(plain, contrast);
        edje_color_class_set(id.c_str(), color.r, color.g, color.b, color.a, 255, 255, 255, 255,
                             255, 255, 255, 255);
    }
}

void ColorTable::TakeOff(Contrast) const
{
    for (const auto& [id, color] : mColors)
        edje_color_class_del(id.c_str());
}

const Color* ColorTable::Find(const std::string& id) const
{
    auto found = mColors.find(id);
    return found == mColors.end() ? nullptr : &found->second;
}

} // namespace WatchPort
