#include "port/OffScreen.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <string>

using testing::ElementsAre;

namespace
{

void CountCB(void* data, Evas_Object*, void*)
{
    ++*static_cast<int*>(data);
}

class PlatformTheme : public OffScreenTest
{
protected:
    void SetUp() override
    {
        OffScreenTest::SetUp();
        elm_theme_overlay_add(nullptr, ThemePath());
        mNaviframe = elm_naviframe_add(mWindow);
        evas_object_smart_callback_add(mNaviframe, "transition,finished", CountCB, &mFinished);
        evas_object_resize(mNaviframe, kSize, kSize);
        evas_object_show(mNaviframe);
    }

    void TearDown() override
    {
        OffScreenTest::TearDown();
        elm_theme_overlay_del(nullptr, ThemePath());
    }

    static const char* ThemePath() { return getenv("PLATFORM_THEME"); }

    // A screen of one opaque colour, 0xRRGGBB.
    Evas_Object* NewScreen(unsigned int color)
    {
        Evas_Object* screen = evas_object_rectangle_add(mCanvas);
        evas_object_color_set(screen, color >> 16 & 0xff, color >> 8 & 0xff, color & 0xff, 255);
        return screen;
    }

    Elm_Object_Item* Push(unsigned int color)
    {
        return elm_naviframe_item_push(mNaviframe, "", nullptr, nullptr, NewScreen(color), "empty");
    }

    bool IsSeen(unsigned int color) const { return (PixelAt(180, 180) & 0xffffff) == color; }
    bool IsSeenSoon(unsigned int color) const
    {
        return Toolkit::RunUntil([this, color] { return IsSeen(color); });
    }

    static constexpr unsigned int kRed = 0xff0000;
    static constexpr unsigned int kGreen = 0x00ff00;

    Evas_Object* mNaviframe = nullptr;
    int mFinished = 0;
};

TEST_F(PlatformTheme, HasTheApplicationLayoutWithContentThatFillsIt)
{
    Evas_Object* layout = elm_layout_add(mWindow);
    EXPECT_TRUE(elm_layout_theme_set(layout, "layout", "application", "default"));
    Evas_Object* content = NewScreen(kRed);
    elm_object_part_content_set(layout, "elm.swallow.content", content);
    evas_object_resize(layout, kSize, kSize);
    evas_object_show(layout);
    EXPECT_TRUE(IsSeenSoon(kRed));
    EXPECT_EQ(PixelAt(0, 0) & 0xffffff, kRed);
    EXPECT_EQ(PixelAt(kSize - 1, kSize - 1) & 0xffffff, kRed);
}

TEST_F(PlatformTheme, HasABlackBackgroundThatStillTakesAColour)
{
    Evas_Object* white = NewScreen(0xffffff);
    evas_object_resize(white, kSize, kSize);
    evas_object_show(white);
    Evas_Object* background = elm_bg_add(mWindow);
    evas_object_resize(background, kSize, kSize);
    evas_object_show(background);
    EXPECT_TRUE(IsSeenSoon(0x000000));
    elm_bg_color_set(background, 0, 255, 0);
    EXPECT_TRUE(IsSeenSoon(kGreen));
}

TEST_F(PlatformTheme, ShowsTheFirstScreenAtOnceOverAllOfTheNaviframe)
{
    Push(kRed);
    DeliverEvents();
    EXPECT_TRUE(IsSeen(kRed));
    EXPECT_EQ(PixelAt(0, 0) & 0xffffff, kRed);
    EXPECT_EQ(PixelAt(kSize - 1, kSize - 1) & 0xffffff, kRed);
}

TEST_F(PlatformTheme, PushesWithATransitionThatFinishes)
{
    Push(kRed);
    DeliverEvents();
    double start = ecore_time_get();
    Push(kGreen);
    EXPECT_TRUE(Toolkit::RunUntil([&] { return !IsSeen(kRed) && !IsSeen(kGreen); })) << "fades";
    EXPECT_TRUE(Toolkit::RunUntil([&] { return mFinished == 1; }));
    EXPECT_GT(ecore_time_get() - start, 0.15);
    EXPECT_TRUE(IsSeenSoon(kGreen));
    EXPECT_EQ(mFinished, 1);
}

TEST_F(PlatformTheme, PopsWithATransitionThatFinishesAndDeletesTheScreen)
{
    Elm_Object_Item* first = Push(kRed);
    DeliverEvents();
    Elm_Object_Item* second = Push(kGreen);
    ASSERT_TRUE(Toolkit::RunUntil([&] { return mFinished == 1; }));
    int deletions = 0;
    evas_object_event_callback_add(
        elm_object_item_content_get(second), EVAS_CALLBACK_DEL,
        [](void* data, Evas*, Evas_Object*, void*) { ++*static_cast<int*>(data); }, &deletions);

    elm_naviframe_item_pop(mNaviframe);
    EXPECT_TRUE(Toolkit::RunUntil([&] { return mFinished == 2 && deletions == 1; }));
    EXPECT_EQ(elm_naviframe_top_item_get(mNaviframe), first);
    EXPECT_TRUE(IsSeenSoon(kRed));
}

TEST_F(PlatformTheme, ShowsAnInsertedScreenAtOnceWithoutATransition)
{
    Elm_Object_Item* first = Push(kRed);
    DeliverEvents();
    Elm_Object_Item* second = elm_naviframe_item_insert_after(mNaviframe, first, "", nullptr,
                                                              nullptr, NewScreen(kGreen), "empty");
    DeliverEvents();
    EXPECT_TRUE(IsSeen(kGreen));
    EXPECT_EQ(elm_naviframe_top_item_get(mNaviframe), second);
    EXPECT_EQ(mFinished, 0);
}

TEST_F(PlatformTheme, ShowsTheScreenBelowAtOnceWhenTheTopOneIsDeleted)
{
    Push(kRed);
    DeliverEvents();
    Elm_Object_Item* second = Push(kGreen);
    ASSERT_TRUE(Toolkit::RunUntil([&] { return mFinished == 1; }));
    elm_object_item_del(second);
    DeliverEvents();
    EXPECT_TRUE(IsSeen(kRed));
}

TEST_F(PlatformTheme, HidesTheBackButtonAndLetsItGoWithItsScreen)
{
    Push(kRed);
    Elm_Object_Item* second =
        elm_naviframe_item_insert_after(mNaviframe, elm_naviframe_top_item_get(mNaviframe), "",
                                        nullptr, nullptr, NewScreen(kGreen), "empty");
    DeliverEvents();
    Evas_Object* button = elm_object_item_part_content_get(second, "elm.swallow.prev_btn");
    ASSERT_NE(button, nullptr);
    EXPECT_FALSE(evas_object_visible_get(button));
    int deletions = 0;
    evas_object_event_callback_add(
        button, EVAS_CALLBACK_DEL,
        [](void* data, Evas*, Evas_Object*, void*) { ++*static_cast<int*>(data); }, &deletions);

    elm_object_item_del(second);
    EXPECT_EQ(deletions, 1);
}

TEST_F(PlatformTheme, ShowsTheScreenBelowWhenOneIsDeletedInMidPush)
{
    Push(kRed);
    DeliverEvents();
    Elm_Object_Item* second = Push(kGreen);
    ASSERT_TRUE(Toolkit::RunUntil([&] { return !IsSeen(kRed); }));
    elm_object_item_del(second);
    EXPECT_TRUE(IsSeenSoon(kRed));
}

TEST_F(PlatformTheme, EndsATitleTransitionThoughThereIsNoTitle)
{
    int titles = 0;
    evas_object_smart_callback_add(mNaviframe, "title,transition,finished", CountCB, &titles);
    Elm_Object_Item* item = Push(kRed);
    DeliverEvents();
    elm_naviframe_item_title_enabled_set(item, EINA_FALSE, EINA_TRUE);
    EXPECT_TRUE(Toolkit::RunUntil([&] { return titles == 1; }));
    elm_naviframe_item_title_enabled_set(item, EINA_TRUE, EINA_TRUE);
    EXPECT_TRUE(Toolkit::RunUntil([&] { return titles == 2; }));
    EXPECT_TRUE(IsSeen(kRed));
}

class TitledScreen : public PlatformTheme
{
protected:
    Elm_Object_Item* PushTitled(const char* title, unsigned int color)
    {
        return elm_naviframe_item_push(mNaviframe, title, nullptr, nullptr, NewScreen(color), "");
    }

    bool HasTitle() const
    {
        for (int x = kSize / 4; x < kSize * 3 / 4; ++x)
            for (int y = 0; y < kSize / 6; ++y)
                if ((PixelAt(x, y) & 0xffffff) == 0xffffff)
                    return true;
        return false;
    }
};

TEST_F(TitledScreen, HasItsTitleAboveItsContent)
{
    PushTitled("III", kRed);
    DeliverEvents();
    EXPECT_TRUE(HasTitle());
    EXPECT_TRUE(IsSeen(kRed));
    EXPECT_NE(PixelAt(kSize / 2, 0) & 0xffffff, kRed);
    EXPECT_EQ(PixelAt(kSize / 2, kSize - 1) & 0xffffff, kRed);
}

TEST_F(TitledScreen, MovesAsOneWithoutATitleDoes)
{
    Push(kRed);
    DeliverEvents();
    PushTitled("III", kGreen);
    EXPECT_TRUE(Toolkit::RunUntil([&] { return mFinished == 1; }));
    EXPECT_TRUE(IsSeenSoon(kGreen));
    elm_naviframe_item_pop(mNaviframe);
    EXPECT_TRUE(Toolkit::RunUntil([&] { return mFinished == 2; }));
    EXPECT_TRUE(IsSeenSoon(kRed));
    EXPECT_FALSE(HasTitle());
}

TEST_F(TitledScreen, GivesItsContentAllRoomWithoutItsTitle)
{
    int titles = 0;
    evas_object_smart_callback_add(mNaviframe, "title,transition,finished", CountCB, &titles);
    Elm_Object_Item* item = PushTitled("III", kRed);
    DeliverEvents();
    elm_naviframe_item_title_enabled_set(item, EINA_FALSE, EINA_TRUE);
    EXPECT_TRUE(Toolkit::RunUntil([&] { return titles == 1; }));
    EXPECT_FALSE(HasTitle());
    EXPECT_EQ(PixelAt(kSize / 2, 0) & 0xffffff, kRed);
    elm_naviframe_item_title_enabled_set(item, EINA_TRUE, EINA_FALSE);
    DeliverEvents();
    EXPECT_TRUE(Toolkit::RunUntil([&] { return HasTitle(); }));
}

class EffectScroller : public PlatformTheme
{
protected:
    // A watch is touched; the toolkit's default profile is for a mouse.
    void SetUp() override
    {
        elm_config_scroll_thumbscroll_enabled_set(EINA_TRUE);
        elm_config_scroll_bounce_enabled_set(EINA_TRUE);
        PlatformTheme::SetUp();
    }

    void Touch(int fromY, int toY)
    {
        evas_event_feed_mouse_move(mCanvas, 180, fromY, mTime, nullptr);
        evas_event_feed_mouse_down(mCanvas, 1, EVAS_BUTTON_NONE, mTime, nullptr);
        int step = toY < fromY ? -10 : 10;
        for (int y = fromY; y != toY; y += step)
        {
            mTime += 10;
            evas_event_feed_mouse_move(mCanvas, 180, y + step, mTime, nullptr);
            DeliverEvents();
        }
    }
    void Release() { evas_event_feed_mouse_up(mCanvas, 1, EVAS_BUTTON_NONE, mTime + 10, nullptr); }

    Evas_Object* AddPlainScroller(int width = kSize)
    {
        Evas_Object* scroller = AddScroller(width, 4 * kSize, "effect");
        evas_object_geometry_set(scroller, 0, kTop, kSize, kHeight);
        return scroller;
    }

    void ExpectContent(int y)
    {
        for (int x : {0, 180, kSize - 10, kSize - 1})
            EXPECT_EQ(PixelAt(x, y) & 0xffffff, kContent) << x << " " << y;
    }

    static int TopOf(Evas_Object* scroller)
    {
        int top = 0;
        elm_scroller_region_get(scroller, nullptr, &top, nullptr, nullptr);
        return top;
    }

    // Whether there is none although one had the time to come.
    static bool IsWithoutShade(Evas_Object* scroller)
    {
        const double end = ecore_loop_time_get() + 0.3;
        Toolkit::RunUntil([end] { return ecore_loop_time_get() > end; });
        double value = 0;
        const char* state =
            edje_object_part_state_get(elm_layout_edje_get(scroller), "top_veil", &value);
        return std::string("default") == state;
    }

    static constexpr unsigned int kContent = 0x000080;
    static constexpr int kTop = 60;
    static constexpr int kHeight = 240;
    unsigned int mTime = 1;
};

TEST_F(EffectScroller, IsAStyleOfTheScroller)
{
    Evas_Object* scroller = elm_scroller_add(mWindow);
    EXPECT_TRUE(elm_object_style_set(scroller, "effect"));
}

TEST_F(EffectScroller, DrawsNothingButItsClippedContentAtTheTop)
{
    AddPlainScroller();
    for (int y = kTop; y < kTop + kHeight; ++y)
        ExpectContent(y);
    EXPECT_NE(PixelAt(180, kTop - 1) & 0xffffff, kContent);
    EXPECT_NE(PixelAt(180, kTop + kHeight) & 0xffffff, kContent);
}

TEST_F(EffectScroller, EndsLargeTextWithAMarkUntilNothingMoreFollows)
{
    edje_size_class_set("watch/text-size", 200, 90, 200, 90);
    Evas_Object* scroller = AddPlainScroller();
    const int bottom = kTop + kHeight;
    auto isShaded = [&] { return (PixelAt(10, bottom - 2) & 0xffffff) == 0; };
    auto isMarked = [&]
    {
        for (int y = bottom - kHeight / 12; y < bottom; ++y)
        {
            if ((PixelAt(180, y) & 0xff) > 0xc0 && PixelAt(180, y) != PixelAt(100, y))
                return true;
        }
        return false;
    };
    EXPECT_TRUE(Toolkit::RunUntil([&] { return isShaded() && isMarked(); }));
    elm_scroller_region_show(scroller, 0, 4 * kSize, kSize, kHeight);
    EXPECT_TRUE(Toolkit::RunUntil([&] { return !isShaded() && !isMarked(); }));
    elm_scroller_region_show(scroller, 0, 0, kSize, kHeight);
    EXPECT_TRUE(Toolkit::RunUntil([&] { return isShaded() && isMarked(); }));
    edje_size_class_del("watch/text-size");
}

TEST_F(EffectScroller, FadesOutWhatIsScrolledUp)
{
    Evas_Object* scroller = AddPlainScroller();
    elm_scroller_region_show(scroller, 0, 500, kSize, kHeight);
    EXPECT_TRUE(Toolkit::RunUntil([&] { return (PixelAt(180, kTop) & 0xffffff) == 0; }));
    EXPECT_FALSE(IsWithoutShade(scroller));
    for (int y = kTop; y < kTop + kHeight / 3; ++y)
        EXPECT_LE(PixelAt(180, y) & 0xff, PixelAt(180, y + 1) & 0xff) << y;
    for (int y = kTop + kHeight / 3; y < kTop + kHeight; ++y)
        ExpectContent(y);

    elm_scroller_region_show(scroller, 0, 0, kSize, kHeight);
    EXPECT_TRUE(Toolkit::RunUntil([&] { return (PixelAt(180, kTop) & 0xffffff) == kContent; }));
}

TEST_F(EffectScroller, FadesOutNothingNearTheTopButTheEndOfShortContent)
{
    Evas_Object* scroller = AddPlainScroller();
    elm_scroller_region_show(scroller, 0, 10, kSize, kHeight);
    EXPECT_TRUE(IsWithoutShade(scroller));
    evas_object_size_hint_min_set(elm_object_content_get(scroller), kSize, kHeight + 10);
    EXPECT_FALSE(IsWithoutShade(scroller));
}

TEST_F(EffectScroller, FadesOutNothingOfWhatIsPulledDownAtTheTop)
{
    Evas_Object* scroller = AddPlainScroller();
    Touch(100, 300);
    ASSERT_TRUE(Toolkit::RunUntil([&] { return TopOf(scroller) < -20; }));
    EXPECT_TRUE(IsWithoutShade(scroller));
    Release();
}

TEST_F(EffectScroller, FadesOutNothingOfWhatIsScrolledSideways)
{
    Evas_Object* scroller = AddPlainScroller(3 * kSize);
    elm_scroller_region_show(scroller, 100, 0, kSize, kHeight);
    EXPECT_TRUE(IsWithoutShade(scroller));
}

TEST_F(EffectScroller, FollowsATouchAndBouncesBack)
{
    Evas_Object* scroller = AddScroller(kSize, 4 * kSize, "effect");
    int drags = 0;
    evas_object_smart_callback_add(scroller, "scroll,drag,start", CountCB, &drags);
    Touch(300, 100);
    EXPECT_TRUE(Toolkit::RunUntil([&] { return TopOf(scroller) > 100; }));
    EXPECT_EQ(drags, 1);
    Release();

    elm_scroller_region_show(scroller, 0, 0, kSize, kSize);
    ASSERT_TRUE(Toolkit::RunUntil([&] { return TopOf(scroller) == 0; }));
    Touch(100, 300);
    EXPECT_TRUE(Toolkit::RunUntil(
        [&]
        {
            int y = 0;
            evas_object_geometry_get(elm_object_content_get(scroller), nullptr, &y, nullptr,
                                     nullptr);
            return y > 0;
        }))
        << "bounces";
    Release();
    EXPECT_TRUE(Toolkit::RunUntil(
        [&]
        {
            int y = 0;
            evas_object_geometry_get(elm_object_content_get(scroller), nullptr, &y, nullptr,
                                     nullptr);
            return y == 0;
        }))
        << "comes back";
}

} // namespace
