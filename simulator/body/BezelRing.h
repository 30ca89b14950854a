#ifndef SIMULATOR_BODY_BEZEL_RING_H
#define SIMULATOR_BODY_BEZEL_RING_H

#include "common/TurnedLines.h"

#include <Ecore.h>

/**
 * What is seen of the bezel ring's turning: its 24 detent marks, the pip at their zero, and the
 * knurled rim. They follow the ring's position with a soft motion.
 */
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

    TurnedLines mMarks;
    double mShown = 0;  ///< degrees
    double mTarget = 0; ///< degrees
    double mLastFrame = 0;
    Ecore_Animator* mAnimator = nullptr;
};

#endif
