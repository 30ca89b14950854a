#include "page/Setting.h"
#include "page/stage/Clock.h"
#include "page/stage/Ink.h"
#include "page/stage/Page.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace
{

constexpr double kReach = 0.96;
constexpr double kFaint = 0.1;
constexpr double kBright = 0.6;
constexpr int kSolid = 200;

int BrightnessAt(const Picture& picture, int x, int y)
{
    const uint32_t pixel = picture.At(x, y);
    return static_cast<int>(std::max({pixel >> 16, pixel >> 8 & 0xff, pixel & 0xff}));
}

// The mark that says that there is more below.
bool IsInMark(int x, int y, int side)
{
    return std::abs(x - side / 2) < side / 18 && y > side * 330 / 360 && y < side * 346 / 360;
}

/// How a part of the text is drawn on a screen that stands still.
struct Sight
{
    double least = 1;
    double most = 0;
    bool isInside = true;

    bool IsSeen() const { return most > kFaint; }
    bool IsWhole() const { return isInside && least >= kBright; }

    void Add(const Sight& other)
    {
        least = std::min(least, other.least);
        most = std::max(most, other.most);
        isInside = isInside && other.isInside;
    }
};

/// A line as it is where it is read, which no shade reaches.
struct PlainLine
{
    Picture picture;
    Box place;
    std::vector<Box> glyphs;

    // The line stands this much lower on the screen that is looked at.
    Sight Measure(const Box& glyph, const Picture& screen, int lower) const
    {
        Sight sight;
        for (int y = place.top; y < place.bottom; ++y)
        {
            for (int x = glyph.left; x < glyph.right; ++x)
            {
                if (Ink::IsAt(picture, x, y) && !IsInMark(x, y + lower, screen.Side()))
                    sight.Add(MeasureAt(x, y, screen, lower));
            }
        }
        return sight;
    }

private:
    Sight MeasureAt(int x, int y, const Picture& screen, int lower) const
    {
        Sight sight{1, 0, Ink::Distance(screen, x, y + lower) <= kReach};
        const bool isOnScreen = y + lower >= 0 && y + lower < screen.Side();
        const int shown = isOnScreen ? BrightnessAt(screen, x, y + lower) : 0;
        sight.most = shown / 255.0;
        const int plain = BrightnessAt(picture, x, y);
        if (plain > kSolid)
            sight.least = static_cast<double>(shown) / plain;
        return sight;
    }
};

/// The page wherever it comes to rest, on a screen of a size, with a text size in percent.
class Rest : public testing::TestWithParam<Setting>
{
protected:
    Rest() { mPage.SetTextSize(std::get<1>(GetParam()) / 100.0); }

    void LookAtEachLine()
    {
        mLines.clear();
        const size_t count = mPage.Lines().size();
        for (size_t line = 0; line < count; ++line)
        {
            mPage.BringToMiddle(mPage.Lines()[line].Middle());
            const Box place = mPage.Lines()[line];
            PlainLine plain{mPage.Look(), place, {}};
            for (const Box& glyph : mPage.Glyphs())
            {
                if (std::abs(glyph.Middle() - place.Middle()) < place.Height() / 2)
                    plain.glyphs.push_back(glyph);
            }
            mLines.push_back(plain);
        }
    }

    // The page's motion, and those that it starts.
    static void ComeToRest()
    {
        for (int motion = 0; motion < 3; ++motion)
            Clock::Skip();
    }

    // The finger moves so far each frame, and leaves the screen at once or rests before.
    void Drag(int way, bool isFlick)
    {
        const int start = way < 0 ? mPage.Side() - 40 : 40;
        mPage.Touch(start);
        for (int frame = 1; frame <= 6; ++frame)
            mPage.DragTo(start + frame * way);
        for (int frame = 0; frame < 20 && !isFlick; ++frame)
            mPage.DragTo(start + 6 * way);
        mPage.Release();
        ComeToRest();
    }

    bool IsMoreMarked() const
    {
        const Picture screen = mPage.Look();
        int marked = 0;
        for (int y = 0; y < screen.Side(); ++y)
        {
            for (int x = 0; x < screen.Side(); ++x)
                marked += IsInMark(x, y, screen.Side()) && Ink::IsAt(screen, x, y);
        }
        return marked > screen.Side() / 3;
    }

    // What each detent brings until the page moves no more.
    template <typename Measure> void AtEachDetent(int direction, const Measure& measure)
    {
        for (int before = -1; before != mPage.ScrolledBy();)
        {
            before = mPage.ScrolledBy();
            Page::TurnBezel(direction);
            ComeToRest();
            measure(LookForCutGlyphs());
        }
    }

    // What is seen of each line; no glyph of them is cut.
    std::vector<Sight> LookForCutGlyphs()
    {
        SCOPED_TRACE("scrolled by " + std::to_string(mPage.ScrolledBy()));
        const Picture screen = mPage.Look();
        std::vector<Sight> sights;
        for (size_t index = 0; index < mLines.size(); ++index)
        {
            const PlainLine& line = mLines[index];
            const int lower = mPage.Lines()[index].top - line.place.top;
            Sight whole;
            int cut = 0;
            for (const Box& glyph : line.glyphs)
            {
                const Sight sight = line.Measure(glyph, screen, lower);
                cut += sight.IsSeen() && !sight.isInside;
                whole.Add(sight);
            }
            EXPECT_EQ(cut, 0) << "line " << index + 1;
            sights.push_back(whole);
        }
        return sights;
    }

    static long CountWhole(const std::vector<Sight>& sights)
    {
        return std::count_if(sights.begin(), sights.end(),
                             [](const Sight& sight) { return sight.IsWhole(); });
    }

    // Each text is long enough for a third line, or ends with the second.
    void ExpectTwoWholeLinesAndThatMoreFollows()
    {
        const std::vector<Sight> sights = LookForCutGlyphs();
        ASSERT_GE(sights.size(), 2U);
        EXPECT_TRUE(sights[0].IsWhole());
        EXPECT_TRUE(sights[1].IsWhole());
        if (sights.size() > 2 && !IsMoreMarked())
        {
            EXPECT_TRUE(sights[2].IsSeen());
            EXPECT_LT(sights[2].least, kBright);
        }
    }

    Page mPage{std::get<0>(GetParam())};
    std::vector<PlainLine> mLines;
};

TEST_P(Rest, NothingIsCutAfterLaunchAndWhereADetentComesToRest)
{
    const auto [side, percent] = GetParam();
    for (const std::string& language : Page::LanguagesAt(side, percent))
    {
        SCOPED_TRACE(language);
        mPage.SetLanguage(language);
        LookAtEachLine();
        mPage.ScrollToTop();
        ComeToRest();
        ExpectTwoWholeLinesAndThatMoreFollows();
        for (int direction : {1, -1})
        {
            AtEachDetent(direction, [](const std::vector<Sight>& sights)
                         { EXPECT_GE(CountWhole(sights), 2); });
            EXPECT_EQ(mPage.ScrolledBy(), direction > 0 ? mPage.End() : 0);
        }
    }
}

TEST_P(Rest, NothingIsCutWhereAFingerLeavesThePage)
{
    for (const std::string& language : Page::Scripts())
    {
        SCOPED_TRACE(language);
        mPage.SetLanguage(language);
        LookAtEachLine();
        mPage.ScrollToTop();
        std::set<int> places;
        for (auto [way, isFlick] : {std::pair(-17, false), {-9, true}, {7, false}, {11, true}})
        {
            Drag(way, isFlick);
            places.insert(mPage.ScrolledBy());
            EXPECT_GE(CountWhole(LookForCutGlyphs()), 2) << way;
        }
        EXPECT_GE(places.size(), 2U);
    }
}

INSTANTIATE_TEST_SUITE_P(OnScreenOf, Rest, Settings(), NameOfSetting);

} // namespace
