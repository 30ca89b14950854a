#include "page/Setting.h"
#include "page/stage/Clock.h"
#include "page/stage/Ink.h"
#include "page/stage/Page.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace
{

constexpr double kMargin = 0.05;
constexpr double kLeastContrast = 7;
constexpr int kLeastLetters = 24;
constexpr int kUsualSide = 360;
// Of the text's box, and what a letter keeps free beside itself.
constexpr double kMarginsOfText = 12;
constexpr double kBearing = 4;

void ExpectApart(const Picture& picture, const Box& line)
{
    // Some letters reach a little beyond their line.
    const int slack = line.Height() / 4;
    for (int edge : {line.top, line.bottom})
    {
        int row = edge - slack;
        while (row < edge + slack && Ink::IsInRow(picture, row))
            ++row;
        EXPECT_LT(row, edge + slack) << "no free row about row " << edge;
    }
}

void ExpectBrightOnBlack(const Picture& picture, const Box& line, const Box& ink)
{
    EXPECT_GE(Ink::Contrast(picture, line.top, line.bottom), kLeastContrast);
    EXPECT_EQ(picture.At(ink.left - 3, line.Middle()), 0U);
    EXPECT_EQ(picture.At(ink.right + 3, line.Middle()), 0U);
}

/// The page, measured by its pixels.
class Layout : public testing::TestWithParam<Setting>
{
protected:
    Layout() { mPage.SetTextSize(mPercent / 100.0); }

    template <typename Measure> void InEachLanguage(const Measure& measure)
    {
        for (const std::string& language : Page::Languages())
        {
            SCOPED_TRACE(language);
            mPage.SetLanguage(language);
            mPage.ScrollToTop();
            measure();
        }
    }

    // Brings each line to where it is read, in turn.
    template <typename Measure> void AtEachLine(const Measure& measure)
    {
        const size_t count = mPage.Lines().size();
        ASSERT_GT(count, 0U);
        for (size_t line = 0; line < count; ++line)
        {
            SCOPED_TRACE("line " + std::to_string(line + 1));
            mPage.BringToMiddle(mPage.Lines()[line].Middle());
            measure(mPage.Look(), mPage.Lines()[line]);
        }
    }

    // After a word that fills its line the toolkit gives the line feed a line of its own.
    bool HasFullLineAbove(const Box& line) const
    {
        const std::vector<Box> lines = mPage.Lines();
        const auto above = std::find_if(lines.begin(), lines.end(),
                                        [&](const Box& other) { return other.bottom == line.top; });
        const double full = mPage.PartBox("help_text").Width() - Scaled(kMarginsOfText);
        return above != lines.end() && above->Width() >= full - Scaled(kBearing);
    }

    // At the usual text size.
    double Scaled(double pixels) const { return pixels * mSide / kUsualSide; }

    // Large letters stand lower in a line than small ones.
    int Tolerance(const Box& line) const { return mPercent == 100 ? 2 : line.Height() / 8; }

    const int mSide = std::get<0>(GetParam());
    const int mPercent = std::get<1>(GetParam());
    Page mPage{mSide};
};

/// The page at the usual text size, on a screen of a size.
class Screen : public testing::TestWithParam<int>
{
protected:
    Page mPage{GetParam()};
};

TEST_P(Layout, EveryLineComesToTheMiddleAndIsApartLargeAndBrightThere)
{
    // At the largest size the arrow is beside the first line.
    mPage.SetArrowVisible(false);
    Clock::Advance(1);
    InEachLanguage(
        [&]
        {
            int letters = 0;
            AtEachLine(
                [&](const Picture& picture, const Box& line)
                {
                    EXPECT_NEAR(line.Middle(), mSide / 2, Tolerance(line));
                    const std::optional<Box> ink = Ink::Within(picture, line.top, line.bottom);
                    if (!ink)
                    {
                        EXPECT_TRUE(HasFullLineAbove(line));
                        return;
                    }
                    letters = std::max(letters, ink->Height());
                    EXPECT_GE(ink->left, mPage.PartBox("help_text").left);
                    EXPECT_LE(ink->right, mPage.PartBox("help_text").right);
                    EXPECT_LE(Ink::Reach(picture, line.top, line.bottom), 1 - 2 * kMargin);
                    ExpectApart(picture, line);
                    ExpectBrightOnBlack(picture, line, *ink);
                });
            EXPECT_GE(letters, std::floor(Scaled(kLeastLetters) * mPercent / 100));
        });
}

TEST_P(Layout, TheTextHasAllTheRoomThatItNeeds)
{
    InEachLanguage(
        [&]
        {
            int height = 0;
            evas_object_textblock_size_formatted_get(mPage.Part("help_text"), nullptr, &height);
            EXPECT_EQ(mPage.PartBox("help_text").Height(), height);
            EXPECT_GE(mPage.Lines().front().top, mPage.PartBox("help_image").bottom);
        });
}

TEST_P(Layout, TheFirstScreenfulShowsThePictureTheArrowAndTheFirstLineInside)
{
    InEachLanguage(
        [&]
        {
            const Picture picture = mPage.Look();
            const Box line = mPage.Lines().front();
            EXPECT_LE(Ink::Reach(picture, line.top, line.bottom), 1);
            EXPECT_EQ(mPage.PartBox("help_image").top, 0);
            EXPECT_LT(mPage.PartBox("arrow_image").bottom, mSide / 2);
            EXPECT_GE(Ink::Contrast(picture, line.top, line.bottom), kLeastContrast);
        });
}

TEST_P(Screen, ALongTextFadesTowardsTheLowerEdge)
{
    mPage.SetLanguage("en");
    const Picture picture = mPage.Look();
    const Box third = mPage.Lines()[2];
    ASSERT_LT(third.top, GetParam());
    EXPECT_TRUE(Ink::Within(picture, third.top, GetParam()));
    EXPECT_LT(Ink::Contrast(picture, third.top, GetParam()), 15);
}

TEST_P(Screen, TheBackgroundIsTrueBlack)
{
    for (bool isArrowVisible : {true, false})
    {
        mPage.SetArrowVisible(isArrowVisible);
        Clock::Advance(1);
        const Picture picture = mPage.Look();
        for (int y = 0; y < GetParam(); ++y)
        {
            ASSERT_EQ(picture.At(1, y), 0U) << y;
            if (y > GetParam() / 2)
            {
                ASSERT_EQ(picture.At(GetParam() - 2, y), 0U) << y;
            }
        }
    }
}

// A picture that is scaled loses its edge.
TEST_P(Screen, EveryPictureIsShownPixelByPixel)
{
    for (auto [part, images] :
         {std::pair<const char*, std::vector<const char*>>{"help_image", {"image"}},
          {"arrow_image", {"arc", "image"}}})
    {
        for (const char* image : images)
        {
            const Evas_Object* picture = mPage.ImageIn(part, image);
            int shownWidth = 0;
            int shownHeight = 0;
            int width = 0;
            int height = 0;
            evas_object_geometry_get(picture, nullptr, nullptr, &shownWidth, &shownHeight);
            evas_object_image_size_get(picture, &width, &height);
            EXPECT_EQ(std::pair(shownWidth, shownHeight), std::pair(width, height))
                << part << " " << image;
        }
    }
}

TEST_P(Screen, ThePageIsNotMirroredForALanguageFromRightToLeft)
{
    mPage.SetLanguage("en");
    const Picture english = mPage.Look();
    mPage.SetLanguage("ar");
    const Picture arabic = mPage.Look();
    EXPECT_NE(arabic, english);
    const int picturesEnd = mPage.PartBox("help_image").bottom;
    for (int y = 0; y < picturesEnd; ++y)
    {
        for (int x = 0; x < GetParam(); ++x)
            ASSERT_EQ(arabic.At(x, y), english.At(x, y)) << x << " " << y;
    }
}

INSTANTIATE_TEST_SUITE_P(OnScreenOf, Layout, Settings(), NameOfSetting);

INSTANTIATE_TEST_SUITE_P(Of, Screen, testing::ValuesIn(Page::Sides()),
                         testing::PrintToStringParamName());

} // namespace
