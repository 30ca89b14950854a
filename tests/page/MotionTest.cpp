#include "common/NaviFrame.h"
#include "page/stage/Clock.h"
#include "page/stage/Page.h"
#include "ui-extension/Appearance.h"

#include <functional>
#include <gtest/gtest.h>

namespace
{

constexpr double kFrame = 1.0 / 60;
constexpr int kSide = 360;
constexpr int kDetent = kSide / 4;

class Motion : public testing::Test
{
protected:
    // A value at each frame.
    static std::vector<int> Watch(double seconds, const std::function<int()>& value)
    {
        std::vector<int> values;
        for (double passed = 0; passed < seconds; passed += kFrame)
        {
            Clock::Advance(kFrame);
            values.push_back(value());
        }
        return values;
    }

    std::vector<int> WatchScrolling(double seconds)
    {
        return Watch(seconds, [this] { return mPage.ScrolledBy(); });
    }

    int ArrowX() const
    {
        int x = 0;
        evas_object_geometry_get(mPage.ImageIn("arrow_image", "image"), &x, nullptr, nullptr,
                                 nullptr);
        return x;
    }

    // How many times something is drawn.
    int CountFrames(double seconds)
    {
        int frames = 0;
        auto count = [](void* data, Evas*, void*) { ++*static_cast<int*>(data); };
        Evas* canvas = evas_object_evas_get(mPage.Layout());
        evas_event_callback_add(canvas, EVAS_CALLBACK_RENDER_PRE, count, &frames);
        Clock::Advance(seconds);
        evas_event_callback_del_full(canvas, EVAS_CALLBACK_RENDER_PRE, count, &frames);
        return frames;
    }

    void MakeLong()
    {
        std::string text;
        for (int line = 0; line < 80; ++line)
            text += "Qivo<br>";
        mPage.SetTranslation(text);
    }

    // The finger moves up a frame's way each frame, and leaves the screen in mid motion.
    void Flick(int way)
    {
        mPage.Touch(300);
        for (int y = 300 - way; y > 140; y -= way)
            mPage.DragTo(y);
        mPage.Release();
    }

    // A screen of the application, pushed above the page.
    static std::shared_ptr<QivoUi::NaviFrameItemPopHandler>
    PushScreen(QivoUi::NaviFrameStateListener* listener = nullptr)
    {
        auto* frame = QivoUi::NaviFrame::GetInstance();
        auto screen = std::make_shared<QivoUi::NaviFrameItemData>();
        screen->mViewLayout = elm_bg_add(frame->GetParent());
        screen->mStateListener = listener;
        return frame->PushNaviframeItem(screen, true);
    }

    Page mPage{kSide};
};

class ReducedMotion : public Motion
{
protected:
    ReducedMotion() { WatchPort::SetReducedMotion(true); }
    ~ReducedMotion() override { WatchPort::SetReducedMotion(false); }

    // What the framework says of a screen that is pushed and popped.
    static std::vector<std::string> ToldOfAScreen()
    {
        class Listener : public QivoUi::NaviFrameStateListener,
                         public QivoUi::NaviFramePopTransitionEventListener
        {
        public:
            void OnItemResume() override { told.emplace_back("resume"); }
            void OnItemPause() override { told.emplace_back("pause"); }
            void OnItemTransitionFinished() override { told.emplace_back("pushed"); }
            void OnPopTransitionFinished() override { told.emplace_back("popped"); }

            std::vector<std::string> told;
        } listener;
        const auto handle = PushScreen(&listener);
        Clock::Advance(1);
        listener.told.emplace_back("pop");
        handle->Pop(true, &listener);
        Clock::Advance(1);
        return listener.told;
    }

    // Whether every frame shows what was there before, or at once what is there after.
    bool ChangesAtOnce(const Picture& before)
    {
        std::vector<Picture> seen;
        for (int frame = 0; frame < 30; ++frame)
        {
            Clock::Advance(kFrame);
            seen.push_back(mPage.Look());
        }
        const Picture& after = seen.back();
        const auto change = std::find(seen.begin(), seen.end(), after);
        EXPECT_LE(change - seen.begin(), 3) << "frames until it is there";
        return after != before &&
               std::count(seen.begin(), change, before) == change - seen.begin() &&
               std::count(change, seen.end(), after) == seen.end() - change;
    }
};

int CountPeaks(const std::vector<int>& values)
{
    const int highest = *std::max_element(values.begin(), values.end());
    int peaks = 0;
    for (size_t index = 1; index < values.size(); ++index)
        peaks += values[index] == highest && values[index - 1] != highest;
    return peaks;
}

TEST_F(Motion, TheArrowBeckonsThreeTimesEachTimeThatItIsShown)
{
    const int rest = ArrowX();
    mPage.SetArrowVisible(false);
    Clock::Advance(1);
    for (int time = 0; time < 2; ++time)
    {
        mPage.SetArrowVisible(true);
        const std::vector<int> way = Watch(2, [this] { return ArrowX(); });
        EXPECT_EQ(CountPeaks(way), 3);
        EXPECT_EQ(way.back(), rest);
        mPage.SetArrowVisible(false);
        Clock::Advance(1);
    }
}

TEST_F(Motion, TheArrowThatIsHiddenAndShownInMidMotionComesToRestToo)
{
    const Picture rest = mPage.Look();
    for (int time = 0; time < 5; ++time)
    {
        mPage.SetArrowVisible(false);
        Clock::Advance(0.13 * time);
        mPage.SetArrowVisible(true);
        Clock::Advance(0.17 * time);
    }
    Clock::Advance(2.5);
    EXPECT_EQ(mPage.Look(), rest);
}

TEST_F(Motion, TheArrowFadesOutSoftlyAndIsGone)
{
    mPage.SetArrowVisible(false);
    int shades = 0;
    Picture last = mPage.Look();
    for (int frame = 0; frame < 30; ++frame)
    {
        Clock::Advance(kFrame);
        Picture picture = mPage.Look();
        shades += picture != last;
        last = picture;
    }
    EXPECT_GE(shades, 10);
    EXPECT_LE(shades, 22);
    EXPECT_FALSE(
        evas_object_visible_get(elm_object_part_content_get(mPage.Layout(), "arrow_image")));
}

TEST_F(Motion, APageThatStandsStillDrawsNothing)
{
    Clock::Advance(1);
    EXPECT_EQ(CountFrames(10), 0);
    mPage.SetArrowVisible(false);
    EXPECT_GT(CountFrames(1), 0);
    EXPECT_EQ(CountFrames(10), 0);
}

TEST_F(Motion, ADetentEasesOutOverItsWay)
{
    Page::TurnBezel(1);
    const std::vector<int> way = WatchScrolling(1);
    EXPECT_TRUE(std::is_sorted(way.begin(), way.end()));
    EXPECT_EQ(way.back(), kDetent);
    const auto end = std::find(way.begin(), way.end(), kDetent);
    const auto half = end - way.begin();
    EXPECT_LE(half * kFrame, 0.7);
    EXPECT_GT(way[half / 2], kDetent / 2) << "the first half is the faster one";
}

TEST_F(Motion, ADetentTakesAThirdOfASecondAtMostAndTheWayBackToTheTopHardlyLonger)
{
    Page::TurnBezel(1);
    const int there = CountFrames(1);
    EXPECT_GE(there, 0.25 / kFrame);
    EXPECT_LE(there, 0.34 / kFrame);
    Page::TurnBezel(-1);
    EXPECT_LE(CountFrames(1), 0.4 / kFrame);
    EXPECT_EQ(mPage.ScrolledBy(), 0);
}

TEST_F(Motion, ADetentIsSeenInTheNextFrameHoweverSoonThatComes)
{
    Page::TurnBezel(1);
    const int first = mPage.ScrolledBy();
    EXPECT_GT(first, 0);
    EXPECT_LE(first, kDetent / 10);
    Clock::Advance(0.1);
    const int turned = mPage.ScrolledBy();
    Page::TurnBezel(-1);
    EXPECT_LT(mPage.ScrolledBy(), turned);
    EXPECT_GT(mPage.ScrolledBy(), turned - kDetent / 10);
}

TEST_F(Motion, FastTurningLosesNoDetentAndIsFollowed)
{
    constexpr int kDetents = 20;
    MakeLong();
    int farthest = 0;
    for (int detent = 1; detent <= kDetents; ++detent)
    {
        Page::TurnBezel(1);
        const std::vector<int> way = WatchScrolling(0.04);
        farthest = std::max(farthest, detent * kDetent - way.back());
        if (detent > 1)
        {
            EXPECT_LT(way.front(), way.back()) << detent;
        }
    }
    EXPECT_LE(farthest, 5 * kDetent);
    const std::vector<int> rest = WatchScrolling(1);
    EXPECT_TRUE(std::is_sorted(rest.begin(), rest.end()));
    EXPECT_EQ(rest.back(), kDetents * kDetent);
}

TEST_F(Motion, TheBezelStopsAtTheEndsWithoutGoingBeyond)
{
    Page::TurnBezel(30);
    std::vector<int> way = WatchScrolling(2);
    Page::TurnBezel(5);
    EXPECT_EQ(WatchScrolling(1).back(), mPage.End());
    EXPECT_LE(*std::max_element(way.begin(), way.end()), mPage.End());
    Page::TurnBezel(-30);
    way = WatchScrolling(2);
    EXPECT_EQ(way.back(), 0);
    EXPECT_GE(*std::min_element(way.begin(), way.end()), 0);
}

TEST_F(Motion, AFlickRunsOnAndSlowsDown)
{
    MakeLong();
    constexpr int kSpeed = 20;
    Flick(kSpeed);
    const int released = mPage.ScrolledBy();
    const std::vector<int> way = WatchScrolling(4);
    EXPECT_NEAR(way.front() - released, kSpeed, 4) << "goes on at the finger's speed";
    EXPECT_GT(way.back(), released + 200);
    EXPECT_TRUE(std::is_sorted(way.begin(), way.end()));
    const size_t half = way.size() / 2;
    EXPECT_GT(way[half] - released, way.back() - way[half]);
    EXPECT_EQ(way[way.size() - 30], way.back()) << "comes to rest";
    EXPECT_EQ(way.back() % (kDetent / 2), 0) << "with whole lines";
}

TEST_F(Motion, AFingerThatRestsBeforeItLeavesMovesThePageNoFurtherThanToTheNearestLine)
{
    MakeLong();
    mPage.Touch(300);
    for (int y = 290; y > 140; y -= 10)
        mPage.DragTo(y);
    for (int frame = 0; frame < 30; ++frame)
        mPage.DragTo(150);
    const int held = mPage.ScrolledBy();
    mPage.Release();
    const int rest = WatchScrolling(2).back();
    EXPECT_NEAR(rest, held, kDetent / 4);
    EXPECT_EQ(rest % (kDetent / 2), 0);
}

TEST_F(Motion, AFingerThatGoesAslantMovesThePageUpAndDownAlone)
{
    const int left = mPage.PartBox("help_image").left;
    mPage.Touch(300);
    for (int way = 10; way <= 100; way += 10)
    {
        mPage.DragTo(300 - way, way);
        EXPECT_EQ(mPage.PartBox("help_image").left, left);
    }
    EXPECT_GT(mPage.ScrolledBy(), 0);
    mPage.Release();
    Clock::Advance(2);
    EXPECT_EQ(mPage.PartBox("help_image").left, left);
}

TEST_F(Motion, PulledBeyondTheTopThePageGivesWayAndComesBack)
{
    mPage.Touch(100);
    for (int y = 110; y <= 300; y += 10)
        mPage.DragTo(y);
    Clock::Advance(0.3);
    const int pulled = mPage.PartBox("help_image").top;
    EXPECT_GT(pulled, 20);
    EXPECT_LT(pulled, 160) << "less than the finger's way";
    mPage.Release();
    Clock::Advance(1.5);
    EXPECT_EQ(mPage.PartBox("help_image").top, 0);
}

TEST_F(Motion, ScreensFadeIntoEachOtherQuickly)
{
    const Picture below = mPage.Look();
    const auto handle = PushScreen();
    auto frames = [&]
    {
        int moving = 0;
        Picture last = mPage.Look();
        for (int tick = 1; tick <= 40; ++tick)
        {
            Clock::Advance(kFrame);
            Picture picture = mPage.Look();
            moving = picture != last ? tick : moving;
            last = picture;
        }
        return moving;
    };
    const int pushed = frames();
    EXPECT_NE(mPage.Look(), below);
    handle->Pop(true, nullptr);
    const int popped = frames();
    EXPECT_EQ(mPage.Look(), below);
    for (int moving : {pushed, popped})
    {
        EXPECT_GE(moving, 8);
        EXPECT_LE(moving, 15) << "a quarter of a second";
    }
}

TEST_F(ReducedMotion, TheArrowIsSimplyThereAndRests)
{
    const Picture shown = mPage.Look();
    mPage.SetArrowVisible(false);
    EXPECT_TRUE(ChangesAtOnce(shown));
    const Picture hidden = mPage.Look();
    mPage.SetArrowVisible(true);
    EXPECT_TRUE(ChangesAtOnce(hidden));
    EXPECT_EQ(mPage.Look(), shown);
    EXPECT_EQ(CountFrames(3), 0);
}

TEST_F(ReducedMotion, ADetentIsAtItsEndAtOnce)
{
    Page::TurnBezel(1);
    EXPECT_EQ(mPage.ScrolledBy(), kDetent);
    EXPECT_EQ(WatchScrolling(1), std::vector<int>(60, kDetent));
}

TEST_F(ReducedMotion, EachDetentCountsAndThePageEndsWhereItAlwaysDoes)
{
    MakeLong();
    for (int detent = 1; detent <= 20; ++detent)
    {
        Page::TurnBezel(1);
        EXPECT_EQ(mPage.ScrolledBy(), detent * kDetent);
    }
    Page::TurnBezel(1000);
    EXPECT_EQ(mPage.ScrolledBy(), mPage.End());
    Page::TurnBezel(-1000);
    EXPECT_EQ(mPage.ScrolledBy(), 0);
    EXPECT_EQ(WatchScrolling(1), std::vector<int>(60, 0));
}

TEST_F(ReducedMotion, AFingerThrowsThePageAsEver)
{
    MakeLong();
    Flick(20);
    const int released = mPage.ScrolledBy();
    EXPECT_GT(WatchScrolling(4).back(), released + 200);
}

TEST_F(ReducedMotion, ScreensReplaceEachOtherWithoutAFade)
{
    const Picture below = mPage.Look();
    const auto handle = PushScreen();
    EXPECT_TRUE(ChangesAtOnce(below));
    const Picture above = mPage.Look();
    handle->Pop(true, nullptr);
    EXPECT_TRUE(ChangesAtOnce(above));
    EXPECT_EQ(mPage.Look(), below);
}

TEST_F(ReducedMotion, TheFrameworkIsToldOfAScreensTransitionsAsEver)
{
    const std::vector<std::string> reduced = ToldOfAScreen();
    WatchPort::SetReducedMotion(false);
    EXPECT_EQ(reduced, ToldOfAScreen());
    EXPECT_EQ(reduced.size(), 4);
}

TEST_F(ReducedMotion, WhatMovesWhenItBeginsIsAtItsEndAtOnce)
{
    WatchPort::SetReducedMotion(false);
    mPage.SetArrowVisible(false);
    Clock::Advance(0.1);
    const Picture half = mPage.Look();
    WatchPort::SetReducedMotion(true);
    EXPECT_TRUE(ChangesAtOnce(half));
}

TEST_F(ReducedMotion, WhenItEndsTheArrowBeckonsAgain)
{
    mPage.SetArrowVisible(false);
    Clock::Advance(1);
    WatchPort::SetReducedMotion(false);
    mPage.SetArrowVisible(true);
    EXPECT_EQ(CountPeaks(Watch(2, [this] { return ArrowX(); })), 3);
    Page::TurnBezel(1);
    EXPECT_LT(mPage.ScrolledBy(), kDetent);
}

} // namespace
