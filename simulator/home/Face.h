#ifndef SIMULATOR_HOME_FACE_H
#define SIMULATOR_HOME_FACE_H

#include "common/TurnedLines.h"
#include "common/WatchState.h"
#include "home/BatteryArc.h"
#include "home/Launcher.h"
#include "home/WatchClock.h"

#include <Evas.h>

/** What the home face shows: dial and hands, the battery, the applications; or a dark screen. */
class Face
{
public:
    using TapCallback = Launcher::TapCallback;

    /**
     * Adds the face to the upper left corner of a canvas, which owns it and must outlive this.
     *
     * @param side Of the screen, in pixels.
     * @param onTap Called with the id of an application whose icon is tapped.
     */
    Face(Evas* canvas, int side, TapCallback onTap);
    Face(const Face&) = delete;
    Face& operator=(const Face&) = delete;

    void ShowTime(const Hands& hands);

    /** Shows battery and applications, and whether the screen is on, as the user wants faces to
     * look. */
    void Show(const WatchState& state);

    /** Picks another application with the bezel. */
    void Turn(int detents);

private:
    void ShowName();

    const int mSide;
    Evas_Object* const mFace;
    BatteryArc mBattery;
    TurnedLines mHourHand;
    TurnedLines mMinuteHand;
    Launcher mLauncher;
};

#endif
