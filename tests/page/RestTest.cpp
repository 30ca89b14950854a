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
    bool IsWhole() const { return IsSeen() && isInside && least >= kBright; }

    void Add(const Sight& other)
    {
        least = std::min(least, other.least);
        most = std::max(most, other.most);
        isInside = isInside && other.isInside;
    }
};

/// The pixels of a glyph where it is read, which no shade reaches.
class PlainGlyph
{
public:
    PlainGlyph(const Picture& picture, const Box& line, const Box& glyph)
    {
        for (int y = line.top; y < line.bottom; ++y)
        {
            for (int x = glyph.left; x < glyph.right; ++x)
            {
                if (Ink::IsAt(picture, x, y))
                    mPixels.push_back({x, y, BrightnessAt(picture, x, y)});
            }
        }
    }

    // The glyph stands this much lower on the screen that is looked at.
    Sight Measure(const Picture& screen, int lower) const
    {
        Sight sight;
        for (const Pixel& pixel : mPixels)
        {
            if (!IsInMark(pixel.x, pixel.y + lower, screen.Side()))
                sight.Add(MeasureAt(pixel, screen, pixel.y + lower));
        }
        return sight;
    }

private:
    struct Pixel
    {
        int x;
        int y;
        int brightness;
    };

    static Sight MeasureAt(const Pixel& pixel, const Picture& screen, int y)
    {
        Sight sight{1, 0, Ink::Distance(screen, pixel.x, y) <= kReach};
        const bool isOnScreen = y >= 0 && y < screen.Side();
        const int shown = isOnScreen ? BrightnessAt(screen, pixel.x, y) : 0;
        sight.most = shown / 255.0;
        if (pixel.brightness > kSolid)
            sight.least = static_cast<double>(shown) / pixel.brightness;
        return sight;
    }

    std::vector<Pixel> mPixels;
};

struct PlainLine
{
    int top;
    std::vector<PlainGlyph> glyphs;
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
            const Picture picture = mPage.Look();
            const Box place = mPage.Lines()[line];
            PlainLine plain{place.top, {}};
            for (const Box& glyph : mPage.Glyphs())
            {
                if (std::abs(glyph.Middle() - place.Middle()) < place.Height() / 2)
                    plain.glyphs.emplace_back(picture, place, glyph);
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

    // Looks where each detent brings the page, until it moves no more.
    void TurnToTheEnd(int direction)
    {
        for (int before = -1; before != mPage.ScrolledBy();)
        {
            before = mPage.ScrolledBy();
            Page::TurnBezel(direction);
            ComeToRest();
            EXPECT_GE(CountWhole(LookForCutGlyphs()), 2);
        }
    }

    // What is seen of each line; no glyph of them is cut.
    std::vector<Sight> LookForCutGlyphs()
    {
        SCOPED_TRACE("scrolled by " + std::to_string(mPage.ScrolledBy()));
        const Picture screen = mPage.Look();
        const std::vector<Box> places = mPage.Lines();
        std::vector<Sight> sights;
        for (size_t index = 0; index < mLines.size(); ++index)
        {
            Sight whole;
            int cut = 0;
            for (const PlainGlyph& glyph : mLines[index].glyphs)
            {
                const Sight sight = glyph.Measure(screen, places[index].top - mLines[index].top);
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
    for (const std::string& language : Page::Languages())
    {
        SCOPED_TRACE(language);
        mPage.SetLanguage(language);
        LookAtEachLine();
        mPage.ScrollToTop();
        ComeToRest();
        ExpectTwoWholeLinesAndThatMoreFollows();
        TurnToTheEnd(1);
        EXPECT_EQ(mPage.ScrolledBy(), mPage.End());
    }
}

TEST_P(Rest, NothingIsCutOnTheWayBackAndWhereAFingerLeavesThePage)
{
    for (const std::string& language : Page::Scripts())
    {
        SCOPED_TRACE(language);
        mPage.SetLanguage(language);
        LookAtEachLine();
        mPage.BringToMiddle(mPage.Lines().back().bottom + mPage.Side());
        TurnToTheEnd(-1);
        EXPECT_EQ(mPage.ScrolledBy(), 0);
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
