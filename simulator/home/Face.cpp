#include "home/Face.h"

#include "common/Theme.h"
#include "home/Ring.h"

#include <Edje.h>
#include <cmath>
#include <string>
#include <utility>

namespace
{
constexpr int kTextSize = 20;
// The toolkit would divide by nothing.
constexpr double kAlmostNothing = 0.001;

// A thin stem with a thick blade; the dark rim sets both off from what is below.
void AddHand(TurnedLines& hand, double width, double length)
{
    hand.Add({width + 4, 0, 0, 0, 190}, {{0, 0, length}});
    hand.Add({4, 226, 232, 238, 255}, {{0, 0, 34}});
    hand.Add({width, 255, 255, 255, 255}, {{0, 34, length}});
}
} // namespace

Face::Face(Evas* canvas, int side, TapCallback onTap)
    : mSide(side), mFace(AddThemed(canvas, "watch/home")), mBattery(canvas),
      mHourHand(canvas, kUsualSide), mMinuteHand(canvas, kUsualSide),
      mLauncher(canvas, side, std::move(onTap))
{
    AddHand(mHourHand, 9.5, 92);
    AddHand(mMinuteHand, 7, 140);
    mMinuteHand.Add({18, 255, 255, 255, 255}, {{0, 0, 0.01}});
    mMinuteHand.Add({9, 24, 199, 168, 255}, {{0, 0, 0.01}});
    edje_object_scale_set(mFace, side / kUsualSide);
    edje_object_part_swallow(mFace, "battery", mBattery.GetObject());
    edje_object_part_swallow(mFace, "hour", mHourHand.GetObject());
    edje_object_part_swallow(mFace, "minute", mMinuteHand.GetObject());
    evas_object_resize(mFace, side, side);
}

void Face::ShowTime(const Hands& hands)
{
    mHourHand.Turn(hands.hour);
    mMinuteHand.Turn(hands.minute);
}

void Face::Show(const WatchState& state)
{
    const std::string percentage = std::to_string(std::lround(state.percentage));
    edje_object_part_text_set(mFace, "percentage", percentage.c_str());
    for (const char* text : {"watch/percentage", "watch/name"})
        edje_object_text_class_set(mFace, text, "Sans",
                                   static_cast<int>(std::lround(kTextSize * state.textSize)));
    mLauncher.SetApps(state.apps);
    mLauncher.SetVisible(state.isScreenOn);
    ShowName();
    edje_transition_duration_factor_set(state.isMotionReduced ? kAlmostNothing : 1);
    edje_object_signal_emit(mFace, state.isContrastHigh ? "contrast,high" : "contrast,normal",
                            "watch");
    mBattery.Draw(mSide, state);
    edje_object_signal_emit(mFace, state.isCharging ? "charge,begin" : "charge,end", "watch");
    edje_object_signal_emit(mFace, state.isScreenOn ? "screen,on" : "screen,off", "watch");
    edje_object_message_signal_process(mFace);
}

void Face::Turn(int detents)
{
    mLauncher.Turn(detents);
    ShowName();
}

void Face::ShowName()
{
    edje_object_part_text_set(mFace, "name", mLauncher.GetPickedName().c_str());
}
