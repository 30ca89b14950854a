#include "application/access/calls/AccessCall.h"
#include "application/access/objects/Actions.h"

namespace WatchPort
{

namespace
{
enum Coordinates : std::uint32_t
{
    kOnScreen = 0,
    kInParent = 2,
};

// That of widgets, the usual one.
constexpr std::uint32_t kWidgetLayer = 3;

void WriteArea(const Eina_Rectangle& area, AccessWriter& answer)
{
    answer.AddStruct(
        [&area](AccessWriter& sides)
        {
            for (const int side : {area.x, area.y, area.w, area.h})
                sides.AddNumber(side);
        });
}

bool AnswerExtents(const AccessCall& call)
{
    std::uint32_t coordinates = 0;
    if (!call.Take(DBUS_TYPE_UINT32, &coordinates))
        return false;
    WriteArea(AreaIn(call, coordinates), call.answer);
    return true;
}

bool AnswerPosition(const AccessCall& call)
{
    std::uint32_t coordinates = 0;
    if (!call.Take(DBUS_TYPE_UINT32, &coordinates))
        return false;
    const Eina_Rectangle area = AreaIn(call, coordinates);
    call.answer.AddNumber(area.x);
    call.answer.AddNumber(area.y);
    return true;
}

bool AnswerSize(const AccessCall& call)
{
    call.answer.AddNumber(call.object.area.w);
    call.answer.AddNumber(call.object.area.h);
    return true;
}

bool TakePoint(const AccessCall& call, std::int32_t& x, std::int32_t& y, std::uint32_t& coordinates)
{
    return call.Take(DBUS_TYPE_INT32, &x, DBUS_TYPE_INT32, &y, DBUS_TYPE_UINT32, &coordinates);
}

bool AnswerContains(const AccessCall& call)
{
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::uint32_t coordinates = 0;
    if (!TakePoint(call, x, y, coordinates))
        return false;
    const Eina_Rectangle area = AreaIn(call, coordinates);
    call.answer.AddTruth(eina_rectangle_coords_inside(&area, x, y));
    return true;
}

// The one drawn last lies on top.
const Accessible* FindAt(const AccessCall& call, const Accessible& object, int x, int y,
                         std::uint32_t coordinates)
{
    for (auto child = object.children.rbegin(); child != object.children.rend(); ++child)
    {
        const Accessible* const found = FindAt(call, *call.tree.Find(*child), x, y, coordinates);
        if (found)
            return found;
    }
    const Eina_Rectangle area =
        AreaIn({call.tree, call.desktop, object, call.message, call.answer}, coordinates);
    return eina_rectangle_coords_inside(&area, x, y) ? &object : nullptr;
}

bool AnswerAtPoint(const AccessCall& call)
{
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::uint32_t coordinates = 0;
    if (!TakePoint(call, x, y, coordinates))
        return false;
    const Accessible* const found = FindAt(call, call.object, x, y, coordinates);
    if (found)
        call.answer.AddReference(found->id);
    else
        call.answer.AddReference("", "");
    return true;
}

bool AnswerLayer(const AccessCall& call)
{
    call.answer.AddUnsigned(kWidgetLayer);
    return true;
}

bool AnswerFocus(const AccessCall& call)
{
    call.answer.AddTruth(GiveFocus(call.object));
    return true;
}
} // namespace

Eina_Rectangle AreaIn(const AccessCall& call, std::uint32_t coordinates)
{
    Eina_Rectangle area = call.object.area;
    if (coordinates == kOnScreen)
    {
        area.x += call.object.origin.x;
        area.y += call.object.origin.y;
    }
    else if (coordinates == kInParent)
    {
        const Eina_Rectangle parent = call.tree.Find(call.object.parent)->area;
        area.x -= parent.x;
        area.y -= parent.y;
    }
    return area;
}

const AccessMethod kComponentMethods[] = {
    {kComponentInterface, "GetExtents", AnswerExtents},
    {kComponentInterface, "GetPosition", AnswerPosition},
    {kComponentInterface, "GetSize", AnswerSize},
    {kComponentInterface, "Contains", AnswerContains},
    {kComponentInterface, "GetAccessibleAtPoint", AnswerAtPoint},
    {kComponentInterface, "GetLayer", AnswerLayer},
    {kComponentInterface, "GrabFocus", AnswerFocus},
    {kImageInterface, "GetImageExtents", AnswerExtents},
    {kImageInterface, "GetImagePosition", AnswerPosition},
    {kImageInterface, "GetImageSize", AnswerSize},
    {nullptr, nullptr, nullptr},
};

} // namespace WatchPort
