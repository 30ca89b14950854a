#include "home/WatchClock.h"

#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>

namespace
{
constexpr int64_t kMinute = 60000;
constexpr int64_t kNoon = int64_t{12} * 60 * kMinute;

class HandsTest : public testing::Test
{
protected:
    HandsTest()
    {
        setenv("TZ", "UTC", 1);
        tzset();
    }
};
} // namespace

TEST(WatchClock, GoesOnFromTheTimeThatItWasTold)
{
    WatchClock clock;
    clock.Set(kNoon, 500);
    EXPECT_EQ(clock.GetTime(500), kNoon);
    EXPECT_EQ(clock.GetTime(1700), kNoon + 1200);
}

TEST(WatchClock, StandsStillWhileItIsFrozenAndGoesOnFromThere)
{
    WatchClock clock;
    clock.Set(kNoon, 0);
    clock.Freeze(true, 1000);
    EXPECT_EQ(clock.GetTime(90000), kNoon + 1000);
    clock.Freeze(false, 90000);
    EXPECT_EQ(clock.GetTime(90500), kNoon + 1500);
}

TEST(WatchClock, CanBeSetWhileItIsFrozen)
{
    WatchClock clock;
    clock.Freeze(true, 0);
    clock.Set(kNoon, 10);
    EXPECT_EQ(clock.GetTime(5000), kNoon);
}

TEST(WatchClock, KnowsTheNextFullMinuteOfItsOwnTime)
{
    WatchClock clock;
    clock.Set(kNoon, 0);
    EXPECT_EQ(clock.GetMillisecondsToMinute(0), kMinute);
    EXPECT_EQ(clock.GetMillisecondsToMinute(59999), 1);
    clock.Set(-1, 0);
    EXPECT_EQ(clock.GetMillisecondsToMinute(0), 1);
}

TEST_F(HandsTest, StandAtFullMinutes)
{
    const int64_t tenPastTen = (10 * 60 + 10) * kMinute;
    EXPECT_DOUBLE_EQ(HandsAt(tenPastTen + 59999).hour, 305);
    EXPECT_DOUBLE_EQ(HandsAt(tenPastTen + 59999).minute, 60);
    EXPECT_DOUBLE_EQ(HandsAt(kNoon).hour, 0);
    EXPECT_DOUBLE_EQ(HandsAt(kNoon).minute, 0);
}

TEST_F(HandsTest, StandRightBeforeTheEpoch)
{
    EXPECT_DOUBLE_EQ(HandsAt(-1).minute, 59 * 6);
}
