#include "port/OffScreen.h"

#include "efl_extension.h"

#include <gmock/gmock.h>

#include <cmath>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

void CountCB(void* data, Evas_Object*, void*)
{
    ++*static_cast<int*>(data);
}

class CircleScroller : public OffScreenTest
{
protected:
    static constexpr int kStep = kSize / 4;

    Evas_Object* AddActivated(Evas_Object* scroller, Eext_Circle_Surface* surface = nullptr)
    {
        Evas_Object* circleObject = eext_circle_object_scroller_add(scroller, surface);
        eext_rotary_object_event_activated_set(circleObject, EINA_TRUE);
        return circleObject;
    }

    static int TopOf(Evas_Object* scroller)
    {
        int top = 0;
        elm_scroller_region_get(scroller, nullptr, &top, nullptr, nullptr);
        return top;
    }

    static int LeftOf(Evas_Object* scroller)
    {
        int left = 0;
        elm_scroller_region_get(scroller, &left, nullptr, nullptr, nullptr);
        return left;
    }

    Evas_Object* AddScroller(int contentWidth, int contentHeight)
    {
        Evas_Object* scroller = OffScreenTest::AddScroller(contentWidth, contentHeight);
        evas_object_smart_callback_add(scroller, "scroll,anim,start", CountCB, &mStarts);
        evas_object_smart_callback_add(scroller, "scroll,anim,stop", CountCB, &mStops);
        return scroller;
    }

    // Turns the bezel and lets the motion come to its end.
    void TurnAndWait(int detents)
    {
        TurnWheel(detents);
        EXPECT_GT(mStarts, mStops);
        EXPECT_TRUE(RunUntil([&] { return mStarts == mStops; }));
    }

    Eext_Circle_Surface* AddSurface()
    {
        mConformant = elm_conformant_add(mWindow);
        evas_object_resize(mConformant, kSize, kSize);
        evas_object_show(mConformant);
        return eext_circle_surface_conformant_add(mConformant);
    }

    // The arc's brightness at an angle, clockwise from the right, on the middle of its line.
    int ArcAt(double degrees) const
    {
        double angle = degrees * M_PI / 180;
        double radius = kSize / 2.0 - kSize / 60.0;
        auto at = [=](double unit) { return static_cast<int>(kSize / 2.0 + radius * unit); };
        return PixelAt(at(std::cos(angle)), at(std::sin(angle))) >> 8 & 0xff;
    }

    Evas_Object* mConformant = nullptr;
    int mStarts = 0;
    int mStops = 0;
};

TEST_F(CircleScroller, ScrollsAQuarterOfTheViewportADetent)
{
    Evas_Object* scroller = AddScroller(kSize, 1000);
    AddActivated(scroller);
    TurnAndWait(1);
    EXPECT_EQ(TopOf(scroller), kStep);
    TurnAndWait(-1);
    EXPECT_EQ(TopOf(scroller), 0);
}

TEST_F(CircleScroller, MovesWithAnAnimation)
{
    Evas_Object* scroller = AddScroller(kSize, 1000);
    AddActivated(scroller);
    int moves = 0;
    evas_object_smart_callback_add(scroller, "scroll", CountCB, &moves);
    TurnWheel(1);
    EXPECT_LT(TopOf(scroller), kStep);
    EXPECT_TRUE(RunUntil([&] { return TopOf(scroller) == kStep; }));
    EXPECT_GT(moves, 2);
}

TEST_F(CircleScroller, MovesByAsLittleAsAPixel)
{
    for (const int way : {1, 2, 3})
    {
        Evas_Object* scroller = AddScroller(kSize, kSize + way);
        Evas_Object* circleObject = AddActivated(scroller);
        TurnAndWait(1);
        EXPECT_EQ(TopOf(scroller), way);
        TurnAndWait(-1);
        EXPECT_EQ(TopOf(scroller), 0);
        evas_object_del(circleObject);
    }
}

TEST_F(CircleScroller, AddsUpDetentsThatComeWhileItMoves)
{
    Evas_Object* scroller = AddScroller(kSize, 2000);
    AddActivated(scroller);
    TurnWheel(1);
    ASSERT_TRUE(RunUntil([&] { return TopOf(scroller) > 0; }));
    TurnWheel(1);
    ASSERT_TRUE(RunUntil([&] { return TopOf(scroller) > kStep / 2; }));
    TurnAndWait(2);
    EXPECT_EQ(TopOf(scroller), 4 * kStep);
}

TEST_F(CircleScroller, TurnsBackInMidMotion)
{
    Evas_Object* scroller = AddScroller(kSize, 2000);
    AddActivated(scroller);
    TurnWheel(2);
    ASSERT_TRUE(RunUntil([&] { return TopOf(scroller) > 0; }));
    TurnAndWait(-1);
    EXPECT_EQ(TopOf(scroller), kStep);
}

TEST_F(CircleScroller, GoesOnFromWhereTheContentWasMovedMeanwhile)
{
    Evas_Object* scroller = AddScroller(kSize, 2000);
    AddActivated(scroller);
    TurnAndWait(1);
    elm_scroller_region_show(scroller, 0, 500, kSize, kSize);
    ASSERT_TRUE(RunUntil([&] { return TopOf(scroller) == 500; }));
    TurnAndWait(1);
    EXPECT_EQ(TopOf(scroller), 500 + kStep);
}

TEST_F(CircleScroller, StopsExactlyAtBothEnds)
{
    constexpr int kContent = kSize + kStep + kStep / 2;
    Evas_Object* scroller = AddScroller(kSize, kContent);
    AddActivated(scroller);
    TurnAndWait(10);
    EXPECT_EQ(TopOf(scroller), kContent - kSize);
    TurnAndWait(-10);
    EXPECT_EQ(TopOf(scroller), 0);
}

TEST_F(CircleScroller, EmitsNothingAtAnEnd)
{
    Evas_Object* scroller = AddScroller(kSize, 1000);
    AddActivated(scroller);
    int moves = 0;
    evas_object_smart_callback_add(scroller, "scroll", CountCB, &moves);
    TurnWheel(-1);
    EXPECT_EQ(moves, 0);
    // What came before a motion has been worked off when the motion ends.
    TurnAndWait(1);
    EXPECT_EQ(TopOf(scroller), kStep);
}

TEST_F(CircleScroller, GoesOnToAnEndThatHasMoved)
{
    Evas_Object* scroller = AddScroller(kSize, kSize + 10);
    AddActivated(scroller);
    TurnAndWait(1);
    EXPECT_EQ(TopOf(scroller), 10);
    evas_object_size_hint_min_set(elm_object_content_get(scroller), kSize, kSize + 50);
    ASSERT_TRUE(RunUntil(
        [&]
        {
            int height = 0;
            elm_scroller_child_size_get(scroller, nullptr, &height);
            return height == kSize + 50;
        }));
    TurnAndWait(1);
    EXPECT_EQ(TopOf(scroller), 50);
}

TEST_F(CircleScroller, ScrollsHorizontallyWhenTheContentIsNotHigher)
{
    Evas_Object* scroller = AddScroller(1000, kSize);
    AddActivated(scroller);
    TurnAndWait(1);
    EXPECT_EQ(LeftOf(scroller), kStep);
    EXPECT_EQ(TopOf(scroller), 0);
}

TEST_F(CircleScroller, ScrollsVerticallyWhenTheContentIsBothHigherAndWider)
{
    Evas_Object* scroller = AddScroller(1000, 1000);
    AddActivated(scroller);
    TurnAndWait(1);
    EXPECT_EQ(LeftOf(scroller), 0);
    EXPECT_EQ(TopOf(scroller), kStep);
}

TEST_F(CircleScroller, WorksWithTheOtherDirectionLocked)
{
    Evas_Object* scroller = AddScroller(kSize, 1000);
    elm_object_scroll_lock_x_set(scroller, EINA_TRUE);
    AddActivated(scroller);
    TurnAndWait(1);
    EXPECT_EQ(TopOf(scroller), kStep);
}

TEST_F(CircleScroller, RespectsEveryKindOfLock)
{
    Evas_Object* scroller = AddScroller(kSize, 1000);
    AddActivated(scroller);
    int moves = 0;
    evas_object_smart_callback_add(scroller, "scroll", CountCB, &moves);

    elm_object_scroll_lock_y_set(scroller, EINA_TRUE);
    TurnWheel(1);
    elm_object_scroll_lock_y_set(scroller, EINA_FALSE);
    elm_object_scroll_freeze_push(scroller);
    TurnWheel(1);
    elm_object_scroll_freeze_pop(scroller);
    elm_scroller_movement_block_set(scroller, ELM_SCROLLER_MOVEMENT_BLOCK_VERTICAL);
    TurnWheel(1);
    elm_scroller_movement_block_set(scroller, ELM_SCROLLER_MOVEMENT_NO_BLOCK);
    EXPECT_EQ(moves, 0);

    TurnAndWait(1);
    EXPECT_EQ(TopOf(scroller), kStep);
}

TEST_F(CircleScroller, ScrollsOnlyWhileActivated)
{
    Evas_Object* scroller = AddScroller(kSize, 1000);
    Evas_Object* circleObject = AddActivated(scroller);
    eext_rotary_object_event_activated_set(circleObject, EINA_FALSE);
    TurnWheel(1);
    eext_rotary_object_event_activated_set(circleObject, EINA_TRUE);
    TurnAndWait(1);
    EXPECT_EQ(TopOf(scroller), kStep);
}

TEST_F(CircleScroller, IsDeletedWithItsScroller)
{
    Evas_Object* scroller = AddScroller(kSize, 1000);
    Evas_Object* circleObject = AddActivated(scroller);
    int deletions = 0;
    evas_object_event_callback_add(
        circleObject, EVAS_CALLBACK_DEL,
        [](void* data, Evas*, Evas_Object*, void*) { ++*static_cast<int*>(data); }, &deletions);
    evas_object_del(scroller);
    EXPECT_EQ(deletions, 1);
    TurnWheel(1);
}

TEST_F(CircleScroller, LeavesItsScrollerAloneOnceDeleted)
{
    Evas_Object* scroller = AddScroller(kSize, 1000);
    evas_object_del(AddActivated(scroller, AddSurface()));
    Evas_Object* second = AddActivated(scroller);
    TurnAndWait(1);
    EXPECT_EQ(TopOf(scroller), kStep);
    evas_object_del(second);
}

TEST_F(CircleScroller, IsNullForANullScrollerWithOneLine)
{
    EXPECT_EQ(eext_circle_object_scroller_add(nullptr, nullptr), nullptr);
    EXPECT_THAT(LogLines(), ElementsAre(HasSubstr("scroller is null")));
}

TEST_F(CircleScroller, RefusesPoliciesThatAreNone)
{
    Evas_Object* circleObject = eext_circle_object_scroller_add(AddScroller(kSize, 1000), nullptr);
    eext_circle_object_scroller_policy_set(nullptr, ELM_SCROLLER_POLICY_ON, ELM_SCROLLER_POLICY_ON);
    eext_circle_object_scroller_policy_set(mWindow, ELM_SCROLLER_POLICY_ON, ELM_SCROLLER_POLICY_ON);
    eext_circle_object_scroller_policy_set(circleObject, ELM_SCROLLER_POLICY_ON,
                                           ELM_SCROLLER_POLICY_LAST);
    EXPECT_THAT(LogLines(),
                ElementsAre(HasSubstr("no circle scroller"), HasSubstr("no circle scroller"),
                            HasSubstr("policies 1 and 3")));
}

TEST_F(CircleScroller, DrawsNoArcWithoutASurface)
{
    Evas_Object* circleObject = AddActivated(AddScroller(kSize, 720));
    eext_circle_object_scroller_policy_set(circleObject, ELM_SCROLLER_POLICY_ON,
                                           ELM_SCROLLER_POLICY_ON);
    EXPECT_EQ(ArcAt(-15), 0);
    EXPECT_FALSE(evas_object_visible_get(circleObject));
}

TEST_F(CircleScroller, DrawsTheScrollPositionAtTheRightWhenPolicyIsOn)
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

TEST_F(CircleScroller, DrawsAHorizontalScrollPositionAtTheBottom)
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

TEST_F(CircleScroller, NeverDrawsWhenPolicyIsOff)
{
    Evas_Object* scroller = AddScroller(kSize, 2 * kSize);
    Evas_Object* circleObject = AddActivated(scroller, AddSurface());
    eext_circle_object_scroller_policy_set(circleObject, ELM_SCROLLER_POLICY_ON,
                                           ELM_SCROLLER_POLICY_OFF);
    TurnAndWait(1);
    EXPECT_EQ(ArcAt(-15), 0);
    EXPECT_EQ(ArcAt(15), 0);
}

TEST_F(CircleScroller, DrawsWhileItScrollsWhenPolicyIsAuto)
{
    Evas_Object* scroller = AddScroller(kSize, 2 * kSize);
    Evas_Object* circleObject = AddActivated(scroller, AddSurface());
    EXPECT_EQ(ArcAt(15), 0);
    TurnWheel(1);
    EXPECT_TRUE(RunUntil([&] { return ArcAt(15) > 0; }));
    EXPECT_TRUE(RunUntil([&] { return !evas_object_visible_get(circleObject); }));
    EXPECT_EQ(TopOf(scroller), kStep);
    EXPECT_EQ(ArcAt(15), 0);
}

class ArcInABox : public CircleScroller
{
protected:
    void SetUp() override
    {
        CircleScroller::SetUp();
        mBox = elm_box_add(mWindow);
        evas_object_resize(mBox, kSize, kSize);
        evas_object_show(mBox);
        mScroller = AddScroller(kSize, 2 * kSize);
        evas_object_size_hint_weight_set(mScroller, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
        evas_object_size_hint_align_set(mScroller, EVAS_HINT_FILL, EVAS_HINT_FILL);
    }

    void AddArc(Elm_Scroller_Policy policy)
    {
        mCircleObject = AddActivated(mScroller, AddSurface());
        eext_circle_object_scroller_policy_set(mCircleObject, policy, policy);
    }

    Evas_Object* mBox = nullptr;
    Evas_Object* mScroller = nullptr;
    Evas_Object* mCircleObject = nullptr;
};

TEST_F(ArcInABox, IsHiddenTogetherWithItsScrollersParent)
{
    elm_box_pack_end(mBox, mScroller);
    AddArc(ELM_SCROLLER_POLICY_ON);
    EXPECT_TRUE(RunUntil([&] { return ArcAt(-15) > 200; }));
    evas_object_hide(mBox);
    EXPECT_EQ(ArcAt(-15), 0);
    evas_object_show(mBox);
    EXPECT_GT(ArcAt(-15), 200);
}

TEST_F(ArcInABox, IsHiddenWithAParentThatTheScrollerGetsLater)
{
    AddArc(ELM_SCROLLER_POLICY_ON);
    EXPECT_TRUE(RunUntil([&] { return ArcAt(-15) > 200; }));
    elm_box_pack_end(mBox, mScroller);
    DeliverEvents();
    evas_object_hide(mBox);
    EXPECT_EQ(ArcAt(-15), 0);
}

TEST_F(ArcInABox, IsHiddenAndShownTogetherWithItsScroller)
{
    AddArc(ELM_SCROLLER_POLICY_ON);
    EXPECT_TRUE(RunUntil([&] { return ArcAt(-15) > 200; }));
    evas_object_hide(mScroller);
    EXPECT_EQ(ArcAt(-15), 0);
    evas_object_show(mScroller);
    EXPECT_TRUE(RunUntil([&] { return ArcAt(-15) > 200; }));
}

TEST_F(ArcInABox, IsStackedWithItsScroller)
{
    AddArc(ELM_SCROLLER_POLICY_ON);
    EXPECT_TRUE(RunUntil([&] { return ArcAt(-15) > 200; }));
    Evas_Object* cover = AddRectangle();
    evas_object_color_set(cover, 0, 0, 0, 255);
    EXPECT_EQ(ArcAt(-15), 0);
    evas_object_raise(mScroller);
    EXPECT_GT(ArcAt(-15), 200);
}

TEST_F(ArcInABox, IsNotBroughtBackByShowingItsScroller)
{
    AddArc(ELM_SCROLLER_POLICY_ON);
    EXPECT_TRUE(RunUntil([&] { return ArcAt(-15) > 200; }));
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

TEST_F(ArcInABox, IsNotBroughtBackOnceItsSurfaceIsGone)
{
    AddArc(ELM_SCROLLER_POLICY_ON);
    EXPECT_TRUE(RunUntil([&] { return ArcAt(-15) > 200; }));
    evas_object_del(mConformant);
    evas_object_hide(mScroller);
    DeliverEvents();
    evas_object_show(mScroller);
    DeliverEvents();
    EXPECT_EQ(ArcAt(-15), 0);
}

} // namespace
