#include "efl-extension/circle/ScrollArc.h"

#include <algorithm>
#include <cmath>

namespace WatchPort
{

namespace
{

constexpr double kPi = 3.14159265358979323846;
constexpr double kTrackAngle = kPi / 3;
// Of the screen's diameter: 6 pixels of 360.
constexpr double kLineWidth = 1.0 / 60;
constexpr int kTrackLightness = 64;
constexpr int kThumbLightness = 255;

struct Point
{
    double x;
    double y;
};

// The content's start (0) is at the top of a vertical track and at the left of a horizontal one;
// angles turn clockwise from the right, as y points down.
double AngleAt(double fraction, bool isVertical)
{
    double fromMiddle = (std::clamp(fraction, 0.0, 1.0) - 0.5) * kTrackAngle;
    return isVertical ? fromMiddle : kPi / 2 - fromMiddle;
}

Evas_Vg_Shape* AddLine(Evas_Vg_Container* root, int lightness)
{
    Evas_Vg_Shape* line = evas_vg_shape_add(root);
    evas_vg_shape_stroke_color_set(line, lightness, lightness, lightness, lightness);
    evas_vg_shape_stroke_cap_set(line, EVAS_VG_CAP_ROUND);
    return line;
}

} // namespace

ScrollArc::ScrollArc(Evas_Object* canvasObject) : mCanvasObject(canvasObject)
{
    Evas_Vg_Container* root = evas_vg_container_add(canvasObject);
    mTrack = AddLine(root, kTrackLightness);
    mThumb = AddLine(root, kThumbLightness);
    evas_object_vg_root_node_set(canvasObject, root);
}

void ScrollArc::Stroke(Evas_Vg_Shape* shape, double start, double end, bool isVertical) const
{
    double diameter = std::min(mScreen.w, mScreen.h);
    double width = diameter * kLineWidth;
    double radius = diameter / 2 - width;
    auto pointAt = [&](double fraction)
    {
        double angle = AngleAt(fraction, isVertical);
        return Point{mScreen.w / 2.0 + radius * std::cos(angle),
                     mScreen.h / 2.0 + radius * std::sin(angle)};
    };
    Point from = pointAt(start);
    Point to = pointAt(end);
    evas_vg_shape_reset(shape);
    evas_vg_shape_stroke_width_set(shape, width);
    evas_vg_shape_append_move_to(shape, from.x, from.y);
    evas_vg_shape_append_arc_to(shape, to.x, to.y, radius, radius, 0, EINA_FALSE, isVertical);
}

void ScrollArc::Draw(const Eina_Rectangle& screen, const ScrollPosition& position)
{
    mScreen = screen;
    evas_object_geometry_set(mCanvasObject, screen.x, screen.y, screen.w, screen.h);
    double content = std::max({position.content, position.viewport, 1});
    double start = position.position / content;
    Stroke(mTrack, 0, 1, position.isVertical);
    Stroke(mThumb, start, start + position.viewport / content, position.isVertical);
    evas_object_show(mCanvasObject);
}

void ScrollArc::Hide()
{
    evas_object_hide(mCanvasObject);
}

} // namespace WatchPort
