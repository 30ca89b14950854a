#include "home/Ring.h"

#include <cmath>
#include <gtest/gtest.h>

namespace
{
constexpr double kCentre = 180;

double DistanceOf(const Place& one, double x, double y)
{
    return std::hypot(one.x - x, one.y - y);
}

class RingTest : public testing::TestWithParam<int>
{
protected:
    const int mCount = GetParam();
    const Ring mRing{mCount};
};
} // namespace

INSTANTIATE_TEST_SUITE_P(Counts, RingTest, testing::Values(1, 2, 7, 12, 13, 30, 31, 100));

TEST_P(RingTest, EachIsWithinTheRoundScreen)
{
    for (int app = 0; app < mCount; ++app)
    {
        const Place place = mRing.GetPlace(app);
        EXPECT_LE(DistanceOf(place, kCentre, kCentre) + place.side / 2, 0.98 * kCentre);
    }
}

TEST_P(RingTest, NoneCoversAnotherOfItsPage)
{
    for (int first = 0; first < mCount; first += Ring::kMostPlaces)
    {
        for (int app = first + 1; app < first + mRing.GetCountFrom(first); ++app)
        {
            const Place before = mRing.GetPlace(app - 1);
            const Place place = mRing.GetPlace(app);
            EXPECT_GE(DistanceOf(place, before.x, before.y), place.side - 0.001);
        }
    }
}

TEST_P(RingTest, EachIsOnTheOnePageThatItsNumberSays)
{
    for (int app = 0; app < mCount; ++app)
    {
        const int first = Ring::GetFirst(app);
        EXPECT_LE(first, app);
        EXPECT_LT(app, first + mRing.GetCountFrom(first));
    }
}

TEST_P(RingTest, DetentsGoRoundInBothDirections)
{
    EXPECT_EQ(mRing.GetNext(0, mCount), 0);
    EXPECT_EQ(mRing.GetNext(0, -1), mCount - 1);
    EXPECT_EQ(mRing.GetNext(mCount - 1, 1), 0);
    EXPECT_EQ(mRing.GetNext(0, 1000 * mCount), 0);
}

TEST(Ring, UpToTwelveStandAtTheHours)
{
    const Place fourth = Ring(5).GetPlace(3);
    EXPECT_NEAR(fourth.y, kCentre, 0.001);
    EXPECT_GT(fourth.x, kCentre);
}
