#ifndef SIMULATOR_HOME_BATTERY_ARC_H
#define SIMULATOR_HOME_BATTERY_ARC_H

#include "common/WatchState.h"

#include <Evas.h>

/** The battery as a small open ring: a dim track with the remaining charge on it. */
class BatteryArc
{
public:
    /** Adds it to the canvas, which owns it and must outlive this object. */
    explicit BatteryArc(Evas* canvas);

    /** The caller places it over the whole face. */
    Evas_Object* GetObject() const { return mObject; }

    /** @param faceSide The side of the face in pixels */
    void Draw(int faceSide, const WatchState& state);

private:
    void Stroke(Evas_Vg_Shape* shape, int faceSide, double percentage, double textSize) const;

    Evas_Object* const mObject;
    Evas_Vg_Shape* mTrack;
    Evas_Vg_Shape* mLevel;
};

#endif
