#ifndef SIMULATOR_BODY_PICTURE_WATCH_PICTURE_H
#define SIMULATOR_BODY_PICTURE_WATCH_PICTURE_H

#include "body/picture/BezelRing.h"
#include "body/picture/Layout.h"
#include "common/WatchState.h"

#include <Evas.h>
#include <cstdint>

/** The whole watch on a canvas: body, ring, keys, charger, and what its screen shows. */
class WatchPicture
{
public:
    enum class Kind
    {
        OnDesk, ///< on a desk, in motion
        Alone   ///< transparent around the watch; every state is shown at once
    };

    /** Adds everything to the canvas, which must outlive this object. The desk fills the window. */
    WatchPicture(Evas* canvas, const Layout& layout, Kind kind);

    /** Moves everything to another layout of the same screen. */
    void Place(const Layout& layout);

    /** Shows the ring, the keys and the charger. The first time there is no motion. */
    void Show(const WatchState& state);

    /**
     * Redraws a part of the screen.
     *
     * @param pixels All of the screen, row by row, 0x__RRGGBB.
     * @param area Which of them are new, within the screen.
     */
    void ShowScreen(const uint32_t* pixels, const Eina_Rectangle& area);

private:
    void Signal(bool before, bool now, const char* on, const char* off);

    const int mScreenSize;
    const Kind mKind;
    Evas_Object* const mDesk; ///< null when the watch is alone
    Evas_Object* const mBody;
    BezelRing mRing;
    Evas_Object* const mMask;
    Evas_Object* const mScreen;
    WatchState mState;
    bool mIsShown = false;
};

#endif
