#include "efl-extension/Stacking.h"

#include <algorithm>
#include <vector>

namespace WatchPort
{

namespace
{

using Path = std::vector<const Evas_Object*>;

Path PathFromCanvas(const Evas_Object* object)
{
    Path path;
    for (; object; object = evas_object_smart_parent_get(object))
        path.push_back(object);
    std::reverse(path.begin(), path.end());
    return path;
}

// A window's own place is that on the desktop.
Eina_Rectangle AreaOf(const Evas_Object* object, const Eina_Rectangle& canvas)
{
    if (evas_object_smart_type_check(object, "elm_win"))
        return canvas;
    Eina_Rectangle area{};
    evas_object_geometry_get(object, &area.x, &area.y, &area.w, &area.h);
    return area;
}

bool IsSiblingAbove(const Evas_Object* object, const Evas_Object* other)
{
    for (other = evas_object_above_get(other); other; other = evas_object_above_get(other))
        if (other == object)
            return true;
    return false;
}

} // namespace

bool IsInSight(const Evas_Object* object)
{
    Eina_Rectangle seen{};
    evas_output_viewport_get(evas_object_evas_get(object), &seen.x, &seen.y, &seen.w, &seen.h);
    for (; object; object = evas_object_clip_get(object))
    {
        const Eina_Rectangle area = AreaOf(object, seen);
        if (!evas_object_visible_get(object) || !eina_rectangle_intersection(&seen, &area) ||
            eina_rectangle_is_empty(&seen))
            return false;
    }
    return true;
}

bool IsAbove(const Evas_Object* object, const Evas_Object* other)
{
    Path path = PathFromCanvas(object);
    Path otherPath = PathFromCanvas(other);
    auto [branch, otherBranch] =
        std::mismatch(path.begin(), path.end(), otherPath.begin(), otherPath.end());
    if (branch == path.end())
        return false;
    return otherBranch == otherPath.end() || IsSiblingAbove(*branch, *otherBranch);
}

} // namespace WatchPort
