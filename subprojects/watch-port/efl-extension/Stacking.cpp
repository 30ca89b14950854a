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

bool IsSiblingAbove(const Evas_Object* object, const Evas_Object* other)
{
    for (other = evas_object_above_get(other); other; other = evas_object_above_get(other))
        if (other == object)
            return true;
    return false;
}

} // namespace

bool IsShown(const Evas_Object* object)
{
    for (; object; object = evas_object_clip_get(object))
        if (!evas_object_visible_get(object))
            return false;
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
