#include "body/BezelRing.h"

#include "body/DetentDrag.h"

#include <cmath>

namespace
{
// In this time 63 % of the way is gone.
constexpr double kEasingSeconds = 0.05;
constexpr double kArrivedDegrees = 0.1;
} // namespace

BezelRing::BezelRing(Evas* canvas) : mMarks(canvas, "watch/marks")
{
}

BezelRing::~BezelRing()
{
    if (mAnimator)
        ecore_animator_del(mAnimator);
}

void BezelRing::JumpTo(int detents)
{
    mShown = mTarget = detents * kDegreesPerDetent;
    mMarks.Turn(mShown);
}

void BezelRing::TurnTo(int detents)
{
    mTarget = detents * kDegreesPerDetent;
    if (mAnimator || mTarget == mShown)
        return;
    mLastFrame = ecore_loop_time_get();
    mAnimator = ecore_animator_add(SFrameCB, this);
}

bool BezelRing::Step()
{
    const double now = ecore_loop_time_get();
    mShown += (mTarget - mShown) * (1 - std::exp((mLastFrame - now) / kEasingSeconds));
    mLastFrame = now;
    const bool isThere = std::abs(mTarget - mShown) < kArrivedDegrees;
    if (isThere)
        mShown = mTarget;
    mMarks.Turn(mShown);
    return !isThere;
}

Eina_Bool BezelRing::SFrameCB(void* data)
{
    auto* ring = static_cast<BezelRing*>(data);
    if (ring->Step())
        return ECORE_CALLBACK_RENEW;
    ring->mAnimator = nullptr;
    return ECORE_CALLBACK_CANCEL;
}
