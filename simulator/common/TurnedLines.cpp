#include "common/TurnedLines.h"

#include "common/Pi.h"

#include <cmath>
#include <utility>

TurnedLines::TurnedLines(Evas* canvas, double side)
    : mSide(side), mObject(evas_object_vg_add(canvas)), mRoot(evas_vg_container_add(mObject))
{
    evas_object_vg_root_node_set(mObject, mRoot);
    evas_object_event_callback_add(mObject, EVAS_CALLBACK_RESIZE, SResizedCB, this);
    evas_object_show(mObject);
}

TurnedLines::~TurnedLines()
{
    evas_object_event_callback_del_full(mObject, EVAS_CALLBACK_RESIZE, SResizedCB, this);
}

void TurnedLines::Add(const LineStyle& style, std::vector<RadialLine> lines)
{
    Evas_Vg_Shape* shape = evas_vg_shape_add(mRoot);
    evas_vg_shape_stroke_color_set(shape, style.red, style.green, style.blue, style.alpha);
    evas_vg_shape_stroke_cap_set(shape, EVAS_VG_CAP_ROUND);
    mLayers.push_back({shape, style.width, std::move(lines)});
    Draw();
}

void TurnedLines::Turn(double degrees)
{
    mDegrees = degrees;
    Draw();
}

void TurnedLines::Draw()
{
    int side = 0;
    evas_object_geometry_get(mObject, nullptr, nullptr, &side, nullptr);
    const double unit = side / mSide;
    const double centre = side / 2.0;
    for (const Layer& layer : mLayers)
    {
        evas_vg_shape_reset(layer.mShape);
        evas_vg_shape_stroke_width_set(layer.mShape, layer.mWidth * unit);
        for (const RadialLine& line : layer.mLines)
        {
            const double angle = (line.degrees + mDegrees) * kPi / 180;
            const double x = std::sin(angle) * unit;
            const double y = -std::cos(angle) * unit;
            evas_vg_shape_append_move_to(layer.mShape, centre + x * line.inner,
                                         centre + y * line.inner);
            evas_vg_shape_append_line_to(layer.mShape, centre + x * line.outer,
                                         centre + y * line.outer);
        }
    }
}

void TurnedLines::SResizedCB(void* data, Evas* /*canvas*/, Evas_Object* /*object*/, void* /*event*/)
{
    static_cast<TurnedLines*>(data)->Draw();
}
