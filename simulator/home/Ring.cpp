#include "home/Ring.h"

#include "common/Pi.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr double kCentre = 180;
constexpr double kRingRadius = 151;
constexpr double kLargest = 50;
constexpr int kHours = 12;
} // namespace

int Ring::GetCountFrom(int first) const
{
    return std::min(mCount - first, kMostPlaces);
}

Place Ring::GetPlace(int app) const
{
    const int places = std::clamp(mCount, kHours, kMostPlaces);
    const double turn = 2 * kPi * (app % kMostPlaces) / places;
    return {kCentre + kRingRadius * std::sin(turn), kCentre - kRingRadius * std::cos(turn),
            std::min(kLargest, 2 * kRingRadius * std::sin(kPi / places))};
}
