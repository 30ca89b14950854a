#include "port/efl-extension/CircleScrollerFixture.h"

#include <cmath>

namespace
{

class ScrollArc : public CircleScrollerFixture
{
protected:
    // The arc's brightness at an angle, clockwise from the right, on the middle of its line.
    int ArcAt(double degrees) const
    {
        double angle = degrees * M_PI / 180;
        double radius = kSize / 2.0 - kSize / 60.0;
        auto at = [=](double unit) { return static_cast<int>(kSize / 2.0 + radius * unit); };
        return PixelAt(at(std::cos(angle)), at(std::sin(angle))) >> 8 & 0xff;
    }
};

TEST_F(ScrollArc, DrawsNoArcWithoutASurface)
{
    Evas_Object* circleObject = AddActivated(AddScroller(kSize, 720));
    eext_circle_object_scroller_policy_set(circleObject, ELM_SCROLLER_POLICY_ON,
                                           ELM_SCROLLER_POLICY_ON);
    EXPECT_EQ(ArcAt(-15), 0);
    EXPECT_FALSE(evas_object_visible_get(circleObject));
}

TEST_F(ScrollArc, DrawsTheScrollPositionAtTheRightWhenPolicyIsOn)
{
    Evas_Object* scroller = AddScroller(kSize, 2 * kSize);
    Evas_Object* circleObject = AddActivated(scroller, AddSurface());
    eext_circle_object_scroller_policy_set(circleObject, ELM_SCROLLER_POLICY_OFF,
                                           ELM_SCROLLER_POLICY_ON);
    // The upper half of the content is seen: bright above the middle, the dim track below.
    EXPECT_GT(ArcAt(-15), 200);
    EXPECT_GT(ArcAt(15), 20);
    EXPECT_LT(ArcAt(15), 120);
    EXPECT_EQ(ArcAt(45), 0);

    TurnAndWait(4);
    EXPECT_LT(ArcAt(-15), 120);
    EXPECT_GT(ArcAt(15), 200);
}

TEST_F(ScrollArc, DrawsAHorizontalScrollPositionAtTheBottom)
{
    Evas_Object* scroller = AddScroller(2 * kSize, kSize);
    Evas_Object* circleObject = AddActivated(scroller, AddSurface());
    eext_circle_object_scroller_policy_set(circleObject, ELM_SCROLLER_POLICY_ON,
                                           ELM_SCROLLER_POLICY_OFF);
    // The left half of the content is seen; angles grow from right over bottom to left.
    EXPECT_GT(ArcAt(105), 200);
    EXPECT_LT(ArcAt(75), 120);
    EXPECT_GT(ArcAt(75), 20);
}

TEST_F(ScrollArc, NeverDrawsWhenPolicyIsOff)
{
    Evas_Object* scroller = AddScroller(kSize, 2 * kSize);
    Evas_Object* circleObject = AddActivated(scroller, AddSurface());
    eext_circle_object_scroller_policy_set(circleObject, ELM_SCROLLER_POLICY_ON,
                                           ELM_SCROLLER_POLICY_OFF);
    TurnAndWait(1);
    EXPECT_EQ(ArcAt(-15), 0);
    EXPECT_EQ(ArcAt(15), 0);
}

TEST_F(ScrollArc, DrawsWhileItScrollsWhenPolicyIsAuto)
{
    Evas_Object* scroller = AddScroller(kSize, 2 * kSize);
    Evas_Object* circleObject = AddActivated(scroller, AddSurface());
    EXPECT_EQ(ArcAt(15), 0);
    TurnWheel(1);
    EXPECT_TRUE(Toolkit::RunUntil([&] { return ArcAt(15) > 0; }));
    EXPECT_TRUE(Toolkit::RunUntil([&] { return !evas_object_visible_get(circleObject); }));
    EXPECT_EQ(TopOf(scroller), kStep);
    EXPECT_EQ(ArcAt(15), 0);
}

class ScrollArcInABox : public ScrollArc
{
protected:
    void SetUp() override
    {
        ScrollArc::SetUp();
        mBox = elm_box_add(mWindow);
        evas_object_resize(mBox, kSize, kSize);
        evas_object_show(mBox);
        mScroller = AddScroller(kSize, 2 * kSize);
        evas_object_size_hint_weight_set(mScroller, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
        evas_object_size_hint_align_set(mScroller, EVAS_HINT_FILL, EVAS_HINT_FILL);
    }

    void ShowArc()
    {
        mCircleObject = AddActivated(mScroller, AddSurface());
        eext_circle_object_scroller_policy_set(mCircleObject, ELM_SCROLLER_POLICY_ON,
                                               ELM_SCROLLER_POLICY_ON);
        EXPECT_TRUE(Toolkit::RunUntil([&] { return ArcAt(-15) > 200; }));
    }

    Evas_Object* mBox = nullptr;
    Evas_Object* mScroller = nullptr;
    Evas_Object* mCircleObject = nullptr;
};

TEST_F(ScrollArcInABox, IsHiddenTogetherWithItsScrollersParent)
{
    elm_box_pack_end(mBox, mScroller);
    ShowArc();
    evas_object_hide(mBox);
    EXPECT_EQ(ArcAt(-15), 0);
    evas_object_show(mBox);
    EXPECT_GT(ArcAt(-15), 200);
}

TEST_F(ScrollArcInABox, IsHiddenWithAParentThatTheScrollerGetsLater)
{
    ShowArc();
    elm_box_pack_end(mBox, mScroller);
    DeliverEvents();
    evas_object_hide(mBox);
    EXPECT_EQ(ArcAt(-15), 0);
}

TEST_F(ScrollArcInABox, IsHiddenAndShownTogetherWithItsScroller)
{
    ShowArc();
    evas_object_hide(mScroller);
    EXPECT_EQ(ArcAt(-15), 0);
    evas_object_show(mScroller);
    EXPECT_TRUE(Toolkit::RunUntil([&] { return ArcAt(-15) > 200; }));
}

TEST_F(ScrollArcInABox, IsStackedWithItsScroller)
{
    ShowArc();
    Evas_Object* cover = AddRectangle();
    evas_object_color_set(cover, 0, 0, 0, 255);
    EXPECT_EQ(ArcAt(-15), 0);
    evas_object_raise(mScroller);
    EXPECT_GT(ArcAt(-15), 200);
}

TEST_F(ScrollArcInABox, IsNotBroughtBackByShowingItsScroller)
{
    ShowArc();
    eext_circle_object_scroller_policy_set(mCircleObject, ELM_SCROLLER_POLICY_OFF,
                                           ELM_SCROLLER_POLICY_OFF);
    EXPECT_EQ(ArcAt(-15), 0);
    evas_object_hide(mScroller);
    DeliverEvents();
    evas_object_show(mScroller);
    DeliverEvents();
    EXPECT_EQ(ArcAt(-15), 0);
    EXPECT_EQ(ArcAt(15), 0);
}

TEST_F(ScrollArcInABox, IsNotBroughtBackOnceItsSurfaceIsGone)
{
    ShowArc();
    evas_object_del(mConformant);
    evas_object_hide(mScroller);
    DeliverEvents();
    evas_object_show(mScroller);
    DeliverEvents();
    EXPECT_EQ(ArcAt(-15), 0);
}

} // namespace
