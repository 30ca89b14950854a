#ifndef SIMULATOR_BODY_BEZEL_RING_H
#define SIMULATOR_BODY_BEZEL_RING_H

#include "common/TurnedPicture.h"

#include <Ecore.h>

/** The marks of the bezel ring, which follow its position with a soft motion. */
class BezelRing
{
public:
    /** @param canvas Owns what is seen; this object must go before it. */
    explicit BezelRing(Evas* canvas);
    ~BezelRing();
    BezelRing(const BezelRing&) = delete;
    BezelRing& operator=(const BezelRing&) = delete;

    Evas_Object* GetObject() const { return mMarks.GetObject(); }

    /** Shows a position at once, in detents from the marks' zero, clockwise positive. */
    void JumpTo(int detents);

    /** Turns to a position; nothing runs any more once it is there. */
    void TurnTo(int detents);

private:
    bool Step();
    static Eina_Bool SFrameCB(void* data);

    TurnedPicture mMarks;
    double mShown = 0;  ///< degrees
    double mTarget = 0; ///< degrees
    double mLastFrame = 0;
    Ecore_Animator* mAnimator = nullptr;
};

#endif
