#include "body/picture/Layout.h"

#include <cmath>
#include <gtest/gtest.h>
#include <tuple>

namespace
{
// A window of a zoom that is wider or higher than the watch.
using Extra = Point;

class LayoutTest : public testing::TestWithParam<std::tuple<int, double, Extra>>
{
protected:
    const int mSize = std::get<0>(GetParam());
    const double mZoom = std::get<1>(GetParam());
    const Extra mExtra = std::get<2>(GetParam());
    const int mSide = static_cast<int>(std::lround(mSize * mZoom * 680 / 360));
    const Layout mLayout{mSize, mSide + mExtra.x, mSide + mExtra.y};

    // The middle of what a pixel of the screen takes in the window.
    int Along(int start, int pixel) const
    {
        return start + static_cast<int>((pixel + 0.5) * mLayout.GetScreenSide() / mSize);
    }

    Point ToWindow(int x, int y) const
    {
        const Point corner = mLayout.GetScreenCorner();
        return {Along(corner.x, x), Along(corner.y, y)};
    }

    // A point in the theme's lengths from the watch's centre.
    Point FromCentre(double x, double y) const
    {
        const double unit = mSize * mZoom / 360;
        return {mExtra.x / 2 + static_cast<int>((370 + x) * unit),
                mExtra.y / 2 + static_cast<int>((340 + y) * unit)};
    }
};
} // namespace

INSTANTIATE_TEST_SUITE_P(
    Screens, LayoutTest,
    testing::Combine(testing::Values(360, 390, 454), testing::Values(0.5, 1, 1.37, 2, 4),
                     testing::Values(Extra{0, 0}, Extra{301, 0}, Extra{0, 300})));

TEST_P(LayoutTest, TheWatchIsAsLargeAsFitsAndInTheMiddle)
{
    EXPECT_EQ(mLayout.GetWatchSide(), mSide);
    EXPECT_EQ(mLayout.GetOrigin().x, mExtra.x / 2);
    EXPECT_EQ(mLayout.GetOrigin().y, mExtra.y / 2);
}

TEST_P(LayoutTest, AZoomScalesTheScreenExactly)
{
    EXPECT_NEAR(mLayout.GetScreenSide(), mSize * mZoom, 0.5);
}

TEST(Layout, AtItsUsualSideTheScreenIsShownPixelByPixel)
{
    for (const int size : {360, 390, 454})
    {
        const int side = Layout::GetUsualSide(size);
        EXPECT_EQ(Layout(size, side, side).GetScreenSide(), size);
    }
}

TEST_P(LayoutTest, CentreAndCornersAndEdgesAreThePixelsThere)
{
    const int last = mSize - 1;
    // Smaller than the screen, a pixel of the window stands for several.
    const int slack = mZoom < 1 ? 1 : 0;
    for (const int x : {0, 1, mSize / 2, last - 1, last})
    {
        for (const int y : {0, 1, mSize / 2, last - 1, last})
        {
            const Point pixel = mLayout.GetScreenPixelAt(ToWindow(x, y));
            EXPECT_NEAR(pixel.x, x, slack);
            EXPECT_NEAR(pixel.y, y, slack);
        }
    }
}

TEST_P(LayoutTest, APointBeyondTheScreenIsThePixelAtItsEdge)
{
    const Point nearest = mLayout.GetScreenPixelAt({0, 0});
    EXPECT_EQ(nearest.x, 0);
    EXPECT_EQ(nearest.y, 0);
    const Point farthest = mLayout.GetScreenPixelAt({100000, 100000});
    EXPECT_EQ(farthest.x, mSize - 1);
    EXPECT_EQ(farthest.y, mSize - 1);
}

TEST_P(LayoutTest, EveryPartIsWhereItIsSeen)
{
    EXPECT_EQ(mLayout.GetTargetAt(FromCentre(0, 0)), Target::Screen);
    EXPECT_EQ(mLayout.GetTargetAt(FromCentre(176, 0)), Target::Screen);
    EXPECT_EQ(mLayout.GetTargetAt(FromCentre(-215, 0)), Target::Ring);
    EXPECT_EQ(mLayout.GetTargetAt(FromCentre(0, 215)), Target::Ring);
    EXPECT_EQ(mLayout.GetTargetAt(FromCentre(228, -132)), Target::BackKey);
    EXPECT_EQ(mLayout.GetTargetAt(FromCentre(228, 132)), Target::PowerKey);
    EXPECT_EQ(mLayout.GetTargetAt(FromCentre(-280, 0)), Target::Charger);
    EXPECT_EQ(mLayout.GetTargetAt(FromCentre(-330, 200)), Target::Charger);
    EXPECT_EQ(mLayout.GetTargetAt(FromCentre(290, -320)), Target::Nothing);
    EXPECT_EQ(mLayout.GetTargetAt(FromCentre(-450, 0)), Target::Nothing);
    EXPECT_EQ(mLayout.GetTargetAt(FromCentre(-450, 200)), Target::Nothing);
    EXPECT_EQ(mLayout.GetTargetAt(FromCentre(-330, 400)), Target::Nothing);
}

TEST_P(LayoutTest, TheScreensCornersBelongToTheRing)
{
    const Point corner = mLayout.GetScreenCorner();
    const int inset = mLayout.GetScreenSide() / 10;
    EXPECT_EQ(mLayout.GetTargetAt({corner.x + inset, corner.y + inset}), Target::Ring);
}

TEST_P(LayoutTest, AnglesRunClockwiseFromTheRight)
{
    EXPECT_NEAR(mLayout.GetAngleAt(FromCentre(215, 0)), 0, 1);
    EXPECT_NEAR(mLayout.GetAngleAt(FromCentre(0, 215)), 90, 1);
    EXPECT_NEAR(mLayout.GetAngleAt(FromCentre(0, -215)), -90, 1);
}
