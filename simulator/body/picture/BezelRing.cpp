#include "body/picture/BezelRing.h"

#include "body/input/DetentDrag.h"

#include <cmath>

namespace
{
// The time in which it goes 63 % of the way.
constexpr double kEasingSeconds = 0.05;
constexpr double kArrivedDegrees = 0.1;

// The side of the ring's square where the screen's is 360.
constexpr double kSide = 488;
constexpr int kDetents = 24;
constexpr int kDetentsPerQuarter = 6;
constexpr int kTeethPerDetent = 7;
constexpr LineStyle kToothStyle = {1.5, 97, 105, 115, 165};
constexpr LineStyle kShortStyle = {2.2, 174, 185, 198, 255};
constexpr LineStyle kLongStyle = {3.6, 238, 242, 246, 255};
constexpr LineStyle kPipGlowStyle = {22, 8, 32, 28, 34};
constexpr LineStyle kPipHaloStyle = {15, 15, 58, 50, 62};
constexpr LineStyle kPipStyle = {9, 63, 240, 208, 255};

std::vector<RadialLine> Teeth()
{
    const int count = kDetents * kTeethPerDetent;
    std::vector<RadialLine> teeth(count);
    for (int i = 0; i < count; ++i)
        teeth[i] = {(i + 0.5) * 360 / count, 234.2, 237};
    return teeth;
}

// One at every detent but zero; those of the quarters are longer.
std::vector<RadialLine> Marks(bool areLong)
{
    std::vector<RadialLine> marks;
    for (int i = 1; i < kDetents; ++i)
    {
        if ((i % kDetentsPerQuarter == 0) == areLong)
            marks.push_back({i * kDegreesPerDetent, areLong ? 206.0 : 210.0, 224});
    }
    return marks;
}
} // namespace

BezelRing::BezelRing(Evas* canvas) : mMarks(canvas, kSide)
{
    const std::vector<RadialLine> pip = {{0, 210, 221}};
    mMarks.Add(kToothStyle, Teeth());
    mMarks.Add(kShortStyle, Marks(false));
    mMarks.Add(kLongStyle, Marks(true));
    mMarks.Add(kPipGlowStyle, pip);
    mMarks.Add(kPipHaloStyle, pip);
    mMarks.Add(kPipStyle, pip);
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
