#ifndef SIMULATOR_BODY_PICTURE_BEZEL_RING_H
#define SIMULATOR_BODY_PICTURE_BEZEL_RING_H

#include "common/TurnedLines.h"

#include <Ecore.h>

/**
 * The turning parts of the bezel ring: its 24 detent marks, the pip at their zero, and the knurled
 * rim. They follow the ring's position smoothly.
 */
class BezelRing
{
public:
    /** @param canvas Owns the objects that are drawn; must outlive this object. */
    explicit BezelRing(Evas* canvas);
    ~BezelRing();
    BezelRing(const BezelRing&) = delete;
    BezelRing& operator=(const BezelRing&) = delete;

    Evas_Object* GetObject() const { return mMarks.GetObject(); }

    /** Shows a position at once, in detents from the marks' zero, clockwise positive. */
    void JumpTo(int detents);

    /** Turns to a position; no animation runs once it is there. */
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
