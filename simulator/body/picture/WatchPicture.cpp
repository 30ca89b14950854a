#include "body/picture/WatchPicture.h"

#include "body/picture/RoundMask.h"
#include "common/Theme.h"

#include <Edje.h>
#include <algorithm>

WatchPicture::WatchPicture(Evas* canvas, const Layout& layout, Kind kind)
    : mScreenSize(layout.GetScreenSize()), mKind(kind),
      mDesk(kind == Kind::OnDesk ? AddThemed(canvas, "watch/desk") : nullptr),
      mBody(AddThemed(canvas, "watch/body")), mRing(canvas), mMask(AddRoundMask(canvas)),
      mScreen(evas_object_image_filled_add(canvas))
{
    edje_object_part_swallow(mBody, "marks", mRing.GetObject());
    evas_object_image_size_set(mScreen, mScreenSize, mScreenSize);
    evas_object_image_alpha_set(mScreen, EINA_FALSE);
    evas_object_clip_set(mScreen, mMask);
    evas_object_show(mScreen);
    Place(layout);
}

void WatchPicture::Place(const Layout& layout)
{
    if (mDesk)
        evas_object_resize(mDesk, layout.GetWindowWidth(), layout.GetWindowHeight());
    evas_object_move(mBody, layout.GetOrigin().x, layout.GetOrigin().y);
    evas_object_resize(mBody, layout.GetWatchSide(), layout.GetWatchSide());

    const Point corner = layout.GetScreenCorner();
    const int side = layout.GetScreenSide();
    evas_object_move(mScreen, corner.x, corner.y);
    evas_object_resize(mScreen, side, side);
    evas_object_move(mMask, corner.x, corner.y);
    ResizeRoundMask(mMask, side);
}

void WatchPicture::Signal(bool before, bool now, const char* on, const char* off)
{
    if (before != now)
        edje_object_signal_emit(mBody, now ? on : off, "watch");
}

void WatchPicture::Show(const WatchState& state)
{
    const bool isMoving = mKind == Kind::OnDesk && mIsShown;
    edje_object_animation_set(mBody, isMoving);
    Signal(mState.isBackPressed, state.isBackPressed, "key,back,push", "key,back,release");
    Signal(mState.isPowerPressed, state.isPowerPressed, "key,power,push", "key,power,release");
    Signal(mState.isPlugged, state.isPlugged, "charger,plug", "charger,unplug");
    edje_object_message_signal_process(mBody);
    if (isMoving)
        mRing.TurnTo(state.bezelPosition);
    else
        mRing.JumpTo(state.bezelPosition);
    mState = state;
    mIsShown = true;
}

void WatchPicture::ShowScreen(const uint32_t* pixels, const Eina_Rectangle& area)
{
    auto* shown = static_cast<uint32_t*>(evas_object_image_data_get(mScreen, EINA_TRUE));
    for (int row = area.y; row < area.y + area.h; ++row)
    {
        const size_t start = static_cast<size_t>(row) * mScreenSize + area.x;
        std::copy_n(pixels + start, area.w, shown + start);
    }
    evas_object_image_data_set(mScreen, shown);
    evas_object_image_data_update_add(mScreen, area.x, area.y, area.w, area.h);
}
