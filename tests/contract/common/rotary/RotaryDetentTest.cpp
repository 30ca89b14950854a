#include "common/rotary/RotaryFixture.h"

using QivoUi::RotaryEventManager;

namespace
{

class RotaryDetentTest : public RotaryFixture
{
};

TEST_F(RotaryDetentTest, ClockwiseIsAStepForward)
{
    const auto listener = Register("a");

    Platform::TurnBezel(listener->GetRotaryViewObject(), EEXT_ROTARY_DIRECTION_CLOCKWISE, 1000);

    EXPECT_EQ(Recorder::Take(), Lines({"warn(SRotaryEventCB) Rotary direction: 0",
                                       "a.OnRotaryDetent(1, 1000)", "detent passed on"}));
}

TEST_F(RotaryDetentTest, CounterClockwiseIsAStepBack)
{
    const auto listener = Register("a");

    Platform::TurnBezel(listener->GetRotaryViewObject(), EEXT_ROTARY_DIRECTION_COUNTER_CLOCKWISE,
                        4294967295U);

    EXPECT_EQ(Recorder::Take(), Lines({"warn(SRotaryEventCB) Rotary direction: 1",
                                       "a.OnRotaryDetent(-1, 4294967295)", "detent passed on"}));
}

// The watch may send a value that its type does not name; only the sanitizer refuses to look at it.
#if defined(__clang__)
#define IS_ENUM_CHECKED __has_feature(undefined_behavior_sanitizer)
#else
#define IS_ENUM_CHECKED 0
#endif

#if !IS_ENUM_CHECKED
TEST_F(RotaryDetentTest, AnyOtherDirectionIsAStepBack)
{
    const auto listener = Register("a");

    Platform::TurnBezel(listener->GetRotaryViewObject(),
                        static_cast<Eext_Rotary_Event_Direction>(2), 0);

    EXPECT_EQ(Recorder::Take(), Lines({"warn(SRotaryEventCB) Rotary direction: 2",
                                       "a.OnRotaryDetent(-1, 0)", "detent passed on"}));
}
#endif

TEST_F(RotaryDetentTest, GoesToTheListenerOnTopWhicheverObjectItCameInOn)
{
    const auto a = Register("a");
    const auto b = Register("b");

    EXPECT_EQ(Turn(*a), Lines({"warn(SRotaryEventCB) Rotary direction: 0", "b.OnRotaryDetent(1, 7)",
                               "detent passed on"}));
}

TEST_F(RotaryDetentTest, GoesToNobodyWithAnEmptyStack)
{
    Eext_Rotary_Event_Info info = {EEXT_ROTARY_DIRECTION_CLOCKWISE, 7};

    EXPECT_EQ(RotaryEventManager::SRotaryEventCB(mManager, AddObject("view"), &info), EINA_FALSE);

    EXPECT_EQ(Recorder::Take(), Lines({"warn(SRotaryEventCB) mRotaryEventDataList is empty"}));
}

TEST_F(RotaryDetentTest, GoesToNobodyWithAWidgetOnTop)
{
    const auto listener = Register("a");
    mManager->ActivateRotateElementaryWidget(AddObject("widget"));
    Recorder::Take();

    EXPECT_EQ(Turn(*listener),
              Lines({"warn(SRotaryEventCB) mEventListener is NULL", "detent passed on"}));
}

TEST_F(RotaryDetentTest, GoesToNobodySilentlyWithAnEmptyRecordOnTop)
{
    const auto listener = Register("a");
    mManager->mRotaryEventDataList.push_back(nullptr);

    EXPECT_EQ(Turn(*listener), Lines({"detent passed on"}));
}

TEST_F(RotaryDetentTest, MayDeleteTheListenersObject)
{
    const auto below = Register("below");
    const auto listener = Register("a");
    listener->mReaction = [&] { evas_object_del(listener->GetRotaryViewObject()); };

    const Lines expected =
        Join(Join({"warn(SRotaryEventCB) Rotary direction: 0", "a.OnRotaryDetent(1, 7)",
                   "eext_rotary_object_event_callback_del(aView, "
                   "RotaryEventManager::SRotaryEventCB)"},
                  Deactivation("aView", below->GetRotaryViewObject())),
             {"detent passed on"});
    EXPECT_EQ(Turn(*listener), expected);
    EXPECT_EQ(Stack(), Lines({"belowView"}));
}

TEST_F(RotaryDetentTest, MayDeleteTheListener)
{
    auto listener = Register("a");
    listener->mReaction = [&]
    {
        // The listener owns this function: keep what is still needed.
        auto& owner = listener;
        mManager->UnRegisterEventListener(owner.get());
        owner.reset();
    };

    const Lines lines = Turn(*listener);

    EXPECT_EQ(listener, nullptr);
    EXPECT_EQ(Stack(), Lines());
    EXPECT_EQ(lines.back(), "detent passed on");
}

TEST_F(RotaryDetentTest, MayDestroyTheManager)
{
    const auto listener = Register("a");
    listener->mReaction = [&]
    {
        mManager->UnRegisterEventListener(listener.get());
        RotaryEventManager::Destroy();
    };

    EXPECT_EQ(Turn(*listener).back(), "detent passed on");
    EXPECT_EQ(RotaryEventManager::mPThis, nullptr);
}

TEST_F(RotaryDetentTest, MayRegisterAnotherListenerForTheNextOne)
{
    const auto a = Register("a");
    std::unique_ptr<FakeRotaryListener> b;
    a->mReaction = [&] { b = Register("b"); };

    Turn(*a);

    EXPECT_EQ(Turn(*a), Lines({"warn(SRotaryEventCB) Rotary direction: 0", "b.OnRotaryDetent(1, 7)",
                               "detent passed on"}));
}

class RotaryObjectDeletionTest : public RotaryDetentTest
{
};

TEST_F(RotaryObjectDeletionTest, GivesTheTopBackFromAWidget)
{
    Evas_Object* first = AddObject("first");
    Evas_Object* second = AddObject("second");
    mManager->ActivateRotateElementaryWidget(first);
    mManager->ActivateRotateElementaryWidget(second);
    Recorder::Take();

    evas_object_del(second);
    EXPECT_EQ(Recorder::Take(), Deactivation("second", first));

    evas_object_del(first);
    EXPECT_EQ(Recorder::Take(), Deactivation("first", nullptr));
    EXPECT_EQ(Stack(), Lines());
}

TEST_F(RotaryObjectDeletionTest, UnregistersAListener)
{
    const auto a = Register("a");
    const auto b = Register("b");

    evas_object_del(a->GetRotaryViewObject());

    EXPECT_EQ(
        Recorder::Take(),
        Join({"eext_rotary_object_event_callback_del(aView, RotaryEventManager::SRotaryEventCB)"},
             Deactivation("aView", b->GetRotaryViewObject())));
    EXPECT_EQ(Stack(), Lines({"bView"}));
}

TEST_F(RotaryObjectDeletionTest, IsNotHeardOfAfterADeactivation)
{
    Evas_Object* widget = AddObject("widget");
    mManager->ActivateRotateElementaryWidget(widget);
    mManager->DeActivateRotateElementaryWidget(widget);
    Recorder::Take();

    evas_object_del(widget);

    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(RotaryObjectDeletionTest, DoesNothingForAnObjectWithoutARecord)
{
    mManager->ActivateRotateElementaryWidget(AddObject("widget"));
    Evas_Object* stranger = AddObject("stranger");
    Recorder::Take();

    RotaryEventManager::SViewObjectDeleteCB(mManager, evas_object_evas_get(mWindow), stranger,
                                            nullptr);

    EXPECT_EQ(Recorder::Take(), Lines());
    EXPECT_EQ(Stack(), Lines({"widget"}));
}

TEST_F(RotaryObjectDeletionTest, ReportsThatNoObjectWasNamed)
{
    const auto listener = Register("a");

    RotaryEventManager::SViewObjectDeleteCB(mManager, nullptr, nullptr, nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"error(FindRotaryEventData) Invalid viewObject"}));
    EXPECT_EQ(Stack(), Lines({"aView"}));
}

TEST_F(RotaryObjectDeletionTest, TakesAwayEveryRecordOfTheObject)
{
    Evas_Object* other = AddObject("other");
    Evas_Object* widget = AddObject("widget");
    mManager->ActivateRotateElementaryWidget(widget);
    mManager->ActivateRotateElementaryWidget(other);
    mManager->ActivateRotateElementaryWidget(widget);

    evas_object_del(widget);

    EXPECT_EQ(Stack(), Lines({"other"}));
    EXPECT_EQ(Platform::ActivatedObject(), other);
}

} // namespace
