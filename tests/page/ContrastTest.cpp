#include "page/stage/Clock.h"
#include "page/stage/Ink.h"
#include "page/stage/Page.h"
#include "page/stage/Vision.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

constexpr double kFlare = 0.05;

double Ratio(double luminance, double other)
{
    return (std::max(luminance, other) + kFlare) / (std::min(luminance, other) + kFlare);
}

/// What the arrow and its arc change on the page, for an eye.
struct Hint
{
    Picture shown;
    Picture hidden;

    double RatioAt(int x, int y) const
    {
        return Ratio(shown.LuminanceAt(x, y), hidden.LuminanceAt(x, y));
    }

    // Away from the strokes' edges, which are drawn softly.
    bool IsInside(int x, int y) const
    {
        for (auto [dx, dy] : {std::pair(0, 0), {-2, 0}, {2, 0}, {0, -2}, {0, 2}})
        {
            if (RatioAt(x + dx, y + dy) < 2)
                return false;
        }
        return true;
    }

    // The contrasts of all that is inside the strokes.
    std::vector<double> Measure(const Box& place) const
    {
        std::vector<double> ratios;
        for (int y = place.top + 2; y < place.bottom - 2; ++y)
        {
            for (int x = place.left + 2; x < std::min(place.right, shown.Side()) - 2; ++x)
            {
                if (IsInside(x, y))
                    ratios.push_back(RatioAt(x, y));
            }
        }
        std::sort(ratios.begin(), ratios.end());
        return ratios;
    }
};

/// The usual contrast, or the high one.
class ContrastOf : public testing::TestWithParam<bool>
{
protected:
    ContrastOf()
    {
        Page::SetHighContrast(GetParam());
        mPage.SetLanguage("en");
    }

    Picture LookAtArrow(bool isVisible)
    {
        mPage.SetArrowVisible(isVisible);
        Clock::Skip();
        Clock::Advance(2);
        return mPage.Look();
    }

    const double mLeast = GetParam() ? 15 : 7;
    Page mPage{360};
};

TEST_P(ContrastOf, ArrowIsFoundByEveryEye)
{
    const Picture hidden = LookAtArrow(false);
    const Picture shown = LookAtArrow(true);
    for (const Vision& vision : Vision::All())
    {
        const std::vector<double> ratios =
            Hint{vision.See(shown), vision.See(hidden)}.Measure(mPage.PartBox("arrow_image"));
        ASSERT_GT(ratios.size(), 200U) << vision.name;
        // Some of the arrow is over the end of the hand, which is not quite black.
        EXPECT_GE(ratios[ratios.size() / 5], mLeast) << vision.name;
    }
}

TEST_P(ContrastOf, TextIsBrightInEveryScript)
{
    for (const std::string& language : Page::Scripts())
    {
        mPage.SetLanguage(language);
        mPage.BringToMiddle(mPage.Lines()[1].Middle());
        const Box line = mPage.Lines()[1];
        EXPECT_GE(Ink::Contrast(mPage.Look(), line.top, line.bottom), mLeast) << language;
    }
}

TEST_P(ContrastOf, MarkBelowLargeTextIsBright)
{
    mPage.SetTextSize(2.0);
    Clock::Advance(1);
    EXPECT_GE(Ink::Contrast(mPage.Look(), 330, 346), mLeast);
}

INSTANTIATE_TEST_SUITE_P(Page, ContrastOf, testing::Bool(),
                         [](const auto& info) { return info.param ? "High" : "Usual"; });

} // namespace
