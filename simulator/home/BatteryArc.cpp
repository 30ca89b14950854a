#include "home/BatteryArc.h"

#include "common/Pi.h"

#include <algorithm>
#include <cmath>

namespace
{
// On a face of 360 pixels.
constexpr double kFace = 360;
constexpr double kCentreX = 180;
constexpr double kCentreY = 103;
constexpr double kRadius = 33;
// More radius where all text is twice as large: three digits fit in.
constexpr double kMoreRadius = 13;
constexpr double kWidth = 4;

// From the lower left over the top to the lower right, in degrees clockwise from the right.
constexpr double kStart = 140;
constexpr double kSweep = 260;

constexpr double kLowPercentage = 15;

Evas_Vg_Shape* AddLine(Evas_Vg_Container* root)
{
    Evas_Vg_Shape* line = evas_vg_shape_add(root);
    evas_vg_shape_stroke_cap_set(line, EVAS_VG_CAP_ROUND);
    return line;
}
} // namespace

BatteryArc::BatteryArc(Evas* canvas) : mObject(evas_object_vg_add(canvas))
{
    Evas_Vg_Container* root = evas_vg_container_add(mObject);
    mTrack = AddLine(root);
    mLevel = AddLine(root);
    evas_vg_shape_stroke_color_set(mTrack, 44, 50, 57, 255);
    evas_object_vg_root_node_set(mObject, root);
    evas_object_show(mObject);
}

void BatteryArc::Stroke(Evas_Vg_Shape* shape, int faceSide, double percentage,
                        double textSize) const
{
    const double unit = faceSide / kFace;
    const double sweep = kSweep * std::clamp(percentage, 0.0, 100.0) / 100;
    const double end = (kStart + sweep) * kPi / 180;
    const double start = kStart * kPi / 180;
    const double radius = (kRadius + kMoreRadius * (textSize - 1)) * unit;
    evas_vg_shape_reset(shape);
    if (sweep <= 0)
        return;
    evas_vg_shape_stroke_width_set(shape, kWidth * unit);
    evas_vg_shape_append_move_to(shape, kCentreX * unit + radius * std::cos(start),
                                 kCentreY * unit + radius * std::sin(start));
    evas_vg_shape_append_arc_to(shape, kCentreX * unit + radius * std::cos(end),
                                kCentreY * unit + radius * std::sin(end), radius, radius, 0,
                                sweep > 180, EINA_TRUE);
}

void BatteryArc::Draw(int faceSide, const WatchState& state)
{
    if (state.isCharging || state.percentage > kLowPercentage)
        evas_vg_shape_stroke_color_set(mLevel, 63, 240, 208, 255);
    else
        evas_vg_shape_stroke_color_set(mLevel, 255, 107, 94, 255);
    Stroke(mTrack, faceSide, 100, state.textSize);
    Stroke(mLevel, faceSide, state.percentage, state.textSize);
}
