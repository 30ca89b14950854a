#ifndef SIMULATOR_HOME_FACE_H
#define SIMULATOR_HOME_FACE_H

#include "common/TurnedLines.h"
#include "common/WatchState.h"
#include "home/BatteryArc.h"
#include "home/WatchClock.h"

#include <Evas.h>
#include <functional>

/** What the home face shows: dial and hands, the battery, the guide's icon; or a dark screen. */
class Face
{
public:
    using TapCallback = std::function<void()>;

    /**
     * Adds the face to the upper left corner of a canvas, which owns it and must outlive this.
     *
     * @param side Of the screen, in pixels.
     * @param onTap Called when the icon is tapped.
     */
    Face(Evas* canvas, int side, TapCallback onTap);
    ~Face();
    Face(const Face&) = delete;
    Face& operator=(const Face&) = delete;

    void ShowTime(const Hands& hands);

    /** Shows the battery, and whether the screen is on, as the user wants faces to look. */
    void Show(const WatchState& state);

private:
    static void STappedCB(void* data, Evas_Object* object, const char* signal, const char* source);

    const int mSide;
    const TapCallback mOnTap;
    Evas_Object* const mFace;
    BatteryArc mBattery;
    TurnedLines mHourHand;
    TurnedLines mMinuteHand;
};

#endif
