#include "home/Face.h"

#include "common/Theme.h"

#include <Edje.h>
#include <cmath>
#include <string>
#include <utility>

namespace
{
constexpr double kUsualSide = 360;
}

Face::Face(Evas* canvas, int side, TapCallback onTap)
    : mSide(side), mOnTap(std::move(onTap)), mFace(AddThemed(canvas, "watch/home")),
      mBattery(canvas), mHourHand(canvas, "watch/hand/hour"),
      mMinuteHand(canvas, "watch/hand/minute")
{
    edje_object_scale_set(mFace, side / kUsualSide);
    edje_object_part_swallow(mFace, "battery", mBattery.GetObject());
    edje_object_part_swallow(mFace, "hour", mHourHand.GetObject());
    edje_object_part_swallow(mFace, "minute", mMinuteHand.GetObject());
    edje_object_signal_callback_add(mFace, "icon,tapped", "home", STappedCB, this);
    evas_object_resize(mFace, side, side);
}

Face::~Face()
{
    edje_object_signal_callback_del_full(mFace, "icon,tapped", "home", STappedCB, this);
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
    mBattery.Draw(mSide, state.percentage, state.isCharging);
    edje_object_signal_emit(mFace, state.isCharging ? "charge,begin" : "charge,end", "watch");
    edje_object_signal_emit(mFace, state.isScreenOn ? "screen,on" : "screen,off", "watch");
    edje_object_message_signal_process(mFace);
}

void Face::STappedCB(void* data, Evas_Object* /*object*/, const char* /*signal*/,
                     const char* /*source*/)
{
    static_cast<Face*>(data)->mOnTap();
}
