#include "home/WatchClock.h"

#include <ctime>

namespace
{
constexpr int64_t kSecond = 1000;
constexpr int64_t kMinute = 60 * kSecond;

// Before the epoch, too, the minute began earlier.
int64_t SinceMinute(int64_t time)
{
    return (time % kMinute + kMinute) % kMinute;
}
} // namespace

void WatchClock::Set(int64_t time, int64_t now)
{
    mTime = time;
    mMoment = now;
}

void WatchClock::Freeze(bool isFrozen, int64_t now)
{
    Set(GetTime(now), now);
    mIsFrozen = isFrozen;
}

int64_t WatchClock::GetTime(int64_t now) const
{
    return mIsFrozen ? mTime : mTime + now - mMoment;
}

int64_t WatchClock::GetMillisecondsToMinute(int64_t now) const
{
    return kMinute - SinceMinute(GetTime(now));
}

Hands HandsAt(int64_t time)
{
    const std::time_t minute = (time - SinceMinute(time)) / kSecond;
    std::tm local{};
    localtime_r(&minute, &local);
    return {(local.tm_hour % 12) * 30 + local.tm_min * 0.5, local.tm_min * 6.0};
}
