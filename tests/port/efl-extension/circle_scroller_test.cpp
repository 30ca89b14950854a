#include "port/efl-extension/CircleScrollerFixture.h"
#include "ui-extension/Appearance.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <tuple>

using testing::ElementsAre;
using testing::HasSubstr;

namespace
{

class CircleScroller : public CircleScrollerFixture
{
protected:
    static int LeftOf(Evas_Object* scroller)
    {
        int left = 0;
        elm_scroller_region_get(scroller, &left, nullptr, nullptr, nullptr);
        return left;
    }
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
    EXPECT_TRUE(Toolkit::RunUntil([&] { return TopOf(scroller) == kStep; }));
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
    ASSERT_TRUE(Toolkit::RunUntil([&] { return TopOf(scroller) > 0; }));
    TurnWheel(1);
    ASSERT_TRUE(Toolkit::RunUntil([&] { return TopOf(scroller) > kStep / 2; }));
    TurnAndWait(2);
    EXPECT_EQ(TopOf(scroller), 4 * kStep);
}

TEST_F(CircleScroller, TurnsBackInMidMotion)
{
    Evas_Object* scroller = AddScroller(kSize, 2000);
    AddActivated(scroller);
    TurnWheel(2);
    ASSERT_TRUE(Toolkit::RunUntil([&] { return TopOf(scroller) > 0; }));
    TurnAndWait(-1);
    EXPECT_EQ(TopOf(scroller), kStep);
}

TEST_F(CircleScroller, GoesOnFromWhereTheContentWasMovedMeanwhile)
{
    Evas_Object* scroller = AddScroller(kSize, 2000);
    AddActivated(scroller);
    TurnAndWait(1);
    elm_scroller_region_show(scroller, 0, 500, kSize, kSize);
    ASSERT_TRUE(Toolkit::RunUntil([&] { return TopOf(scroller) == 500; }));
    TurnAndWait(1);
    EXPECT_EQ(TopOf(scroller), 500 + kStep);
}

TEST_F(CircleScroller, MovesByOneLineOfLargeText)
{
    Evas_Object* scroller = AddScroller(kSize, 2000);
    AddActivated(scroller);
    WatchPort::SetTextSize(1.3);
    TurnAndWait(2);
    EXPECT_EQ(TopOf(scroller), 2 * kSize / 6);
    WatchPort::SetTextSize(1.0);
    TurnAndWait(-1);
    EXPECT_EQ(TopOf(scroller), 2 * kSize / 6 - kStep);
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
    ASSERT_TRUE(Toolkit::RunUntil(
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

TEST_F(CircleScroller, LeavesAnotherOneOfItsScrollerAloneOnceDeleted)
{
    Evas_Object* scroller = AddScroller(kSize, 1000);
    AddActivated(scroller);
    evas_object_del(AddActivated(scroller));
    // It gets the memory of the one before.
    AddActivated(AddScroller(kSize, 1000));
    elm_scroller_region_show(scroller, 0, 50, kSize, kSize);
    ASSERT_TRUE(Toolkit::RunUntil([&] { return TopOf(scroller) == 50; }));
    elm_layout_signal_emit(scroller, "watch,text,size", "");
    EXPECT_TRUE(Toolkit::RunUntil([&] { return TopOf(scroller) == kSize / 8; }));
}

// What an application does at a step: it deletes something, once.
class DeletionInAStep : public CircleScroller,
                        public testing::WithParamInterface<std::tuple<const char*, const char*>>
{
public:
    static std::string NameOf(const testing::TestParamInfo<ParamType>& tested)
    {
        const auto& [signal, victim] = tested.param;
        std::string name = std::string(signal) + "_" + victim;
        std::replace_if(
            name.begin(), name.end(), [](char c) { return !isalnum(c); }, '_');
        return name;
    }

protected:
    // A turn of two detents while a turn of one is still moving the content, near its end.
    void TurnUntilDeleted()
    {
        TurnWheel(1);
        EXPECT_TRUE(Toolkit::RunUntil([&] { return mIsDeleted || TopOf(mScroller) > 0; }));
        mIsArmed = true;
        TurnWheel(2);
        EXPECT_TRUE(Toolkit::RunUntil([&] { return mIsDeleted; }));
        TurnWheel(1);
    }

    static void DeleteCB(void* data, Evas_Object*, void*)
    {
        auto* self = static_cast<DeletionInAStep*>(data);
        if (self->mIsArmed && !self->mIsDeleted)
        {
            self->mIsDeleted = true;
            evas_object_del(self->mVictim);
        }
    }

    Evas_Object* mScroller = nullptr;
    Evas_Object* mVictim = nullptr;
    bool mIsArmed = false;
    bool mIsDeleted = false;
};

TEST_P(DeletionInAStep, IsBorne)
{
    const auto& [signal, victim] = GetParam();
    mScroller = AddScroller(kSize, kSize + 2 * kStep);
    Evas_Object* circleObject = AddActivated(mScroller);
    evas_object_smart_callback_add(mScroller, signal, DeleteCB, this);
    const std::map<std::string, Evas_Object*> victims = {
        {"circle object", circleObject},
        {"scroller", mScroller},
        {"content", elm_object_content_get(mScroller)},
        {"window", mWindow}};
    mVictim = victims.at(victim);
    TurnUntilDeleted();
    // The fixture deletes a window.
    if (mVictim == mWindow)
        OffScreenTest::SetUp();
}

INSTANTIATE_TEST_SUITE_P(CircleScroller, DeletionInAStep,
                         testing::Combine(testing::Values("scroll", "scroll,anim,start",
                                                          "scroll,anim,stop", "edge,bottom"),
                                          testing::Values("circle object", "scroller", "content",
                                                          "window")),
                         DeletionInAStep::NameOf);

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
                ElementsAre(HasSubstr("not a circle scroller"), HasSubstr("not a circle scroller"),
                            HasSubstr("policies 1 and 3")));
}

} // namespace
