#ifndef SIMULATOR_HOME_BATTERY_ARC_H
#define SIMULATOR_HOME_BATTERY_ARC_H

#include <Evas.h>

/** The battery as a small open ring: a dim track, and on it how much is left. */
class BatteryArc
{
public:
    /** Adds it to the canvas, which owns it and must outlive this object. */
    explicit BatteryArc(Evas* canvas);

    /** To be placed over the whole face by who holds it. */
    Evas_Object* GetObject() const { return mObject; }

    /** @param faceSide The side of the face in pixels  @param percentage 0 to 100 */
    void Draw(int faceSide, double percentage, bool isCharging);

private:
    void Stroke(Evas_Vg_Shape* shape, int faceSide, double percentage) const;

    Evas_Object* const mObject;
    Evas_Vg_Shape* mTrack;
    Evas_Vg_Shape* mLevel;
};

#endif
