#include "application/access/objects/ThemeMarks.h"

#include <Edje.h>
#include <algorithm>
#include <iterator>
#include <sstream>
#include <string>

namespace WatchPort
{

namespace
{
constexpr char kDecorationItem[] = "accessible-decoration";
constexpr char kButtonsItem[] = "accessible-buttons";

std::vector<std::string> PartsOf(const Evas_Object* object, const char* item)
{
    const char* const type = object ? evas_object_type_get(object) : nullptr;
    const bool isThemed = type && std::string(type) == "edje";
    const char* const parts = isThemed ? edje_object_data_get(object, item) : nullptr;
    std::istringstream names(parts ? parts : "");
    return {std::istream_iterator<std::string>(names), {}};
}

Evas_Object* DrawnOf(const Evas_Object* object, const std::string& part)
{
    return const_cast<Evas_Object*>(edje_object_part_object_get(object, part.c_str()));
}

// What is tapped is often transparent.
bool IsThere(const Evas_Object* object)
{
    for (; object; object = evas_object_clip_get(object))
        if (!evas_object_visible_get(object))
            return false;
    return true;
}

bool Has(const std::vector<Evas_Object*>& objects, const Evas_Object* object)
{
    return std::find(objects.begin(), objects.end(), object) != objects.end();
}
} // namespace

ThemeMarks::ThemeMarks(const Evas_Object* object)
{
    for (const std::string& part : PartsOf(object, kDecorationItem))
        for (Evas_Object* drawn :
             {DrawnOf(object, part), edje_object_part_swallow_get(object, part.c_str())})
            mDecoration.push_back(drawn);
    for (const std::string& part : PartsOf(object, kButtonsItem))
        if (Evas_Object* const drawn = DrawnOf(object, part); drawn && IsThere(drawn))
            mButtons.push_back(drawn);
}

bool ThemeMarks::IsDecoration(const Evas_Object* member) const
{
    return Has(mDecoration, member);
}

Evas_Object* ThemeMarks::FindButtonAt(const Evas_Object* member) const
{
    Eina_Rectangle place{};
    evas_object_geometry_get(member, &place.x, &place.y, &place.w, &place.h);
    for (Evas_Object* button : mButtons)
    {
        Eina_Rectangle area{};
        evas_object_geometry_get(button, &area.x, &area.y, &area.w, &area.h);
        if (eina_rectangle_coords_inside(&area, place.x + place.w / 2, place.y + place.h / 2))
            return button;
    }
    return nullptr;
}

bool TapThemeButton(Evas_Object* button)
{
    Evas_Object* const themed = evas_object_smart_parent_get(button);
    for (const std::string& part : PartsOf(themed, kButtonsItem))
    {
        if (DrawnOf(themed, part) != button)
            continue;
        for (const char* signal : {"mouse,down,1", "mouse,up,1", "mouse,clicked,1"})
            edje_object_signal_emit(themed, signal, part.c_str());
        return true;
    }
    return false;
}

} // namespace WatchPort
