#include "body/picture/RoundMask.h"

#include <gtest/gtest.h>
#include <numeric>

namespace
{
constexpr double kPi = 3.14159265358979323846;

class RoundMaskTest : public testing::TestWithParam<int>
{
protected:
    int At(int x, int y) const { return mMask[static_cast<size_t>(y) * mSide + x]; }

    const int mSide = GetParam();
    const std::vector<uint8_t> mMask = DiscCoverage(mSide);
};
} // namespace

// 181 is odd, as a zoom can make a side.
INSTANTIATE_TEST_SUITE_P(Sides, RoundMaskTest, testing::Values(180, 181, 360, 390, 454, 720));

TEST_P(RoundMaskTest, IsTheSameInItsFourQuadrantsAndBesideItsDiagonals)
{
    for (int y = 0; y < mSide; ++y)
    {
        for (int x = 0; x < mSide; ++x)
        {
            ASSERT_EQ(At(x, y), At(mSide - 1 - x, y));
            ASSERT_EQ(At(x, y), At(x, mSide - 1 - y));
            ASSERT_EQ(At(x, y), At(y, x));
        }
    }
}

TEST_P(RoundMaskTest, CoversTheAreaOfTheDisc)
{
    const double area = std::accumulate(mMask.begin(), mMask.end(), 0.0) / 255;
    const double disc = kPi * mSide * mSide / 4;
    EXPECT_NEAR(area / disc, 1, 0.0005);
}

TEST_P(RoundMaskTest, TouchesEveryEdgeAndLeavesTheCornersOut)
{
    EXPECT_GT(At(mSide / 2, 0), 200);
    EXPECT_GT(At(0, mSide / 2), 200);
    EXPECT_EQ(At(0, 0), 0);
    EXPECT_EQ(At(mSide / 2, mSide / 2), 255);
}

TEST_P(RoundMaskTest, IsSmoothAtItsEdge)
{
    int between = 0;
    for (const uint8_t value : mMask)
        between += value > 0 && value < 255 ? 1 : 0;
    EXPECT_GT(between, mSide * 2);
    EXPECT_LT(between, mSide * 5);
}
