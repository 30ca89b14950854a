#include "body/picture/Layout.h"

#include "common/Pi.h"

#include <algorithm>
#include <cmath>

namespace
{
// In the theme's lengths, of which the screen takes 360.
constexpr double kScreen = 360;
constexpr double kWatch = 680;
constexpr double kCentreX = 370;
constexpr double kCentreY = 340;
constexpr double kRingOuter = 242;
constexpr double kKeyOuter = 278;
constexpr double kKeyAngle = 30;
constexpr double kKeyHalfAngle = 8;
constexpr double kChargerLeft = -40;
constexpr double kChargerTop = 290;
constexpr double kPlugBottom = 400;
constexpr double kCableRight = 60;
constexpr double kCableBottom = 700;

// From the centre of a pixel to the middle of the square.
double FromMiddle(int coordinate, int start, int side)
{
    return coordinate + 0.5 - (start + side / 2.0);
}

int ScaleToScreen(int coordinate, int start, int side, int screenSize)
{
    const int pixel = static_cast<int>(std::floor((coordinate - start + 0.5) * screenSize / side));
    return std::clamp(pixel, 0, screenSize - 1);
}
} // namespace

Layout::Layout(int screenSize, int width, int height)
    : mScreenSize(screenSize), mWidth(width), mHeight(height), mWatchSide(std::min(width, height)),
      mUnit(mWatchSide / kWatch), mOrigin{(width - mWatchSide) / 2, (height - mWatchSide) / 2},
      mSide(static_cast<int>(std::lround(kScreen * mUnit))),
      mCorner{mOrigin.x + static_cast<int>(std::lround(kCentreX * mUnit - mSide / 2.0)),
              mOrigin.y + static_cast<int>(std::lround(kCentreY * mUnit - mSide / 2.0))}
{
}

int Layout::GetUsualSide(int screenSize)
{
    return static_cast<int>(std::lround(kWatch * screenSize / kScreen));
}

double Layout::GetAngleAt(Point point) const
{
    return std::atan2(FromMiddle(point.y, mCorner.y, mSide),
                      FromMiddle(point.x, mCorner.x, mSide)) *
           180 / kPi;
}

Target Layout::GetTargetAt(Point point) const
{
    const double distance =
        std::hypot(FromMiddle(point.x, mCorner.x, mSide), FromMiddle(point.y, mCorner.y, mSide));
    if (distance <= mSide / 2.0)
        return Target::Screen;
    if (distance <= kRingOuter * mUnit)
        return Target::Ring;
    const double angle = GetAngleAt(point);
    if (distance <= kKeyOuter * mUnit && std::abs(angle + kKeyAngle) <= kKeyHalfAngle)
        return Target::BackKey;
    if (distance <= kKeyOuter * mUnit && std::abs(angle - kKeyAngle) <= kKeyHalfAngle)
        return Target::PowerKey;
    const double x = (point.x - mOrigin.x) / mUnit;
    const double y = (point.y - mOrigin.y) / mUnit;
    const bool isPlug = x < kCentreX - kRingOuter && y >= kChargerTop && y < kPlugBottom;
    const bool isCable = x < kCableRight && y >= kPlugBottom && y < kCableBottom;
    return x >= kChargerLeft && (isPlug || isCable) ? Target::Charger : Target::Nothing;
}

Point Layout::GetScreenPixelAt(Point point) const
{
    return {ScaleToScreen(point.x, mCorner.x, mSide, mScreenSize),
            ScaleToScreen(point.y, mCorner.y, mSide, mScreenSize)};
}
