#include "body/input/DetentDrag.h"

#include <cmath>

int DetentDrag::MoveTo(double angle)
{
    mTurned += std::remainder(angle - mAngle, 360);
    mAngle = angle;
    const double detents = std::trunc(mTurned / kDegreesPerDetent);
    mTurned -= detents * kDegreesPerDetent;
    return static_cast<int>(detents);
}
