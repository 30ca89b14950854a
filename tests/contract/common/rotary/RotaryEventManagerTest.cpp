#include "common/RotaryEventManager.h"

#include "common/DirtyMemory.h"
#include "common/rotary/RotaryFixture.h"

using QivoUi::RotaryEventManager;

namespace
{

// Read before main() and any test.
const RotaryEventManager* const kManagerAtStart = RotaryEventManager::mPThis;

class RotaryEventManagerTest : public RotaryFixture
{
};

TEST_F(RotaryEventManagerTest, DoesNotExistWhenTheProcessStarts)
{
    EXPECT_EQ(kManagerAtStart, nullptr);
}

TEST_F(RotaryEventManagerTest, IsMadeOnFirstUseAndOnlyOnce)
{
    RotaryEventManager::Destroy();
    EXPECT_EQ(RotaryEventManager::mPThis, nullptr);

    RotaryEventManager* manager = RotaryEventManager::GetInstance();

    EXPECT_NE(manager, nullptr);
    EXPECT_EQ(RotaryEventManager::mPThis, manager);
    EXPECT_EQ(RotaryEventManager::GetInstance(), manager);
    EXPECT_TRUE(manager->mRotaryEventDataList.empty());
    EXPECT_TRUE(manager->mSpareList.empty());
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(RotaryEventManagerTest, MakesRecordsWithoutObjectAndListener)
{
    InDirtyMemory<Record> record;

    EXPECT_EQ(record->mViewObject, nullptr);
    EXPECT_EQ(record->mEventListener, nullptr);
}

TEST_F(RotaryEventManagerTest, CanBeDestroyedTwice)
{
    RotaryEventManager::Destroy();
    RotaryEventManager::Destroy();

    EXPECT_EQ(RotaryEventManager::mPThis, nullptr);
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(RotaryEventManagerTest, UndoesOnlyTheDeleteCallbacksWhenItGoes)
{
    Evas_Object* first = AddObject("first");
    Evas_Object* second = AddObject("second");
    mManager->ActivateRotateElementaryWidget(first);
    mManager->mRotaryEventDataList.push_back(nullptr);
    FakeRotaryListener listener("a", second);
    mManager->RegisterEventListener(&listener);
    const std::weak_ptr<Record> record = mManager->mRotaryEventDataList.front();
    Recorder::Take();

    RotaryEventManager::Destroy();

    EXPECT_EQ(Recorder::Take(), Lines({"evas_object_event_callback_del(first, 19, "
                                       "RotaryEventManager::SViewObjectDeleteCB)",
                                       "evas_object_event_callback_del(second, 19, "
                                       "RotaryEventManager::SViewObjectDeleteCB)"}));
    EXPECT_EQ(Platform::ActivatedObject(), second);
    EXPECT_TRUE(record.expired());
}

TEST_F(RotaryEventManagerTest, LeavesARecordToItsOtherHolders)
{
    const auto record = MakeRecord(AddObject("widget"));
    mManager->ActivateRotateEvent(record);
    EXPECT_EQ(record.use_count(), 2);

    RotaryEventManager::Destroy();

    EXPECT_EQ(record.use_count(), 1);
}

TEST_F(RotaryEventManagerTest, ActivatesAWidgetWithoutARotaryCallback)
{
    Evas_Object* widget = AddObject("widget");

    mManager->ActivateRotateElementaryWidget(widget);

    EXPECT_EQ(Recorder::Take(), Activation(widget));
    EXPECT_EQ(Platform::ActivatedObject(), widget);
    ASSERT_EQ(Stack(), Lines({"widget"}));
    EXPECT_EQ(mManager->mRotaryEventDataList.back()->mEventListener, nullptr);
    EXPECT_EQ(mManager->mRotaryEventDataList.back().use_count(), 1);
    EXPECT_TRUE(mManager->mSpareList.empty());
}

TEST_F(RotaryEventManagerTest, IgnoresANullWidgetSilently)
{
    mManager->ActivateRotateElementaryWidget(nullptr);

    EXPECT_EQ(Recorder::Take(), Lines());
    EXPECT_EQ(Stack(), Lines());
}

TEST_F(RotaryEventManagerTest, KeepsTheFormerTopBelowTheNewOne)
{
    mManager->ActivateRotateElementaryWidget(AddObject("first"));
    Recorder::Take();
    Evas_Object* second = AddObject("second");

    mManager->ActivateRotateElementaryWidget(second);

    EXPECT_EQ(Recorder::Take(), Activation(second));
    EXPECT_EQ(Stack(), Lines({"first", "second"}));
}

TEST_F(RotaryEventManagerTest, MakesANewRecordForEachActivationOfAnObject)
{
    Evas_Object* widget = AddObject("widget");
    mManager->ActivateRotateElementaryWidget(widget);
    Recorder::Take();

    mManager->ActivateRotateElementaryWidget(widget);

    EXPECT_EQ(Recorder::Take(), Activation(widget));
    EXPECT_EQ(Stack(), Lines({"widget", "widget"}));
    EXPECT_NE(mManager->mRotaryEventDataList.front(), mManager->mRotaryEventDataList.back());
}

TEST_F(RotaryEventManagerTest, RefusesAnEmptyRecord)
{
    mManager->ActivateRotateEvent(nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"error(ActivateRotateEvent) [Invalid] rotaryEventDataPtr"}));
    EXPECT_EQ(Stack(), Lines());
}

TEST_F(RotaryEventManagerTest, ActivatesARecordWithoutAnObjectAllTheSame)
{
    Recorder::Fail("evas_object_event_callback_add");

    mManager->ActivateRotateEvent(MakeRecord(nullptr));

    EXPECT_EQ(Recorder::Take(), Activation(nullptr));
    EXPECT_EQ(Stack(), Lines({"null"}));
}

TEST_F(RotaryEventManagerTest, PutsOneRecordOnTheStackTwiceAndTakesBothAway)
{
    mManager->ActivateRotateElementaryWidget(AddObject("other"));
    const auto record = MakeRecord(AddObject("widget"));
    mManager->ActivateRotateEvent(record);
    mManager->ActivateRotateElementaryWidget(AddObject("top"));
    mManager->ActivateRotateEvent(record);
    EXPECT_EQ(Stack(), Lines({"other", "widget", "top", "widget"}));

    mManager->DeActivateRotateEvent(record);

    EXPECT_EQ(Stack(), Lines({"other", "top"}));
    Recorder::Take();
    // Of its two delete callbacks one is left, which finds nothing.
    evas_object_del(record->mViewObject);
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(RotaryEventManagerTest, ActivatesTheWidgetBelowAgain)
{
    Evas_Object* first = AddObject("first");
    Evas_Object* second = AddObject("second");
    mManager->ActivateRotateElementaryWidget(first);
    mManager->ActivateRotateElementaryWidget(second);
    Recorder::Take();

    mManager->DeActivateRotateElementaryWidget(second);

    EXPECT_EQ(Recorder::Take(), Deactivation("second", first));
    EXPECT_EQ(Stack(), Lines({"first"}));
    EXPECT_EQ(Platform::ActivatedObject(), first);
}

TEST_F(RotaryEventManagerTest, ActivatesTheTopAgainWhenOneBelowIsTakenAway)
{
    Evas_Object* first = AddObject("first");
    Evas_Object* second = AddObject("second");
    Evas_Object* third = AddObject("third");
    mManager->ActivateRotateElementaryWidget(first);
    mManager->ActivateRotateElementaryWidget(second);
    mManager->ActivateRotateElementaryWidget(third);
    Recorder::Take();

    mManager->DeActivateRotateElementaryWidget(second);

    EXPECT_EQ(Recorder::Take(), Deactivation("second", third));
    EXPECT_EQ(Stack(), Lines({"first", "third"}));
    EXPECT_EQ(Platform::ActivatedObject(), third);
}

TEST_F(RotaryEventManagerTest, LeavesNothingActivatedWhenTheLastOneIsTakenAway)
{
    Evas_Object* widget = AddObject("widget");
    mManager->ActivateRotateElementaryWidget(widget);
    Recorder::Take();

    mManager->DeActivateRotateElementaryWidget(widget);

    EXPECT_EQ(Recorder::Take(), Deactivation("widget", nullptr));
    EXPECT_EQ(Stack(), Lines());
    EXPECT_EQ(Platform::ActivatedObject(), nullptr);
}

TEST_F(RotaryEventManagerTest, TakesTheOldestRecordOfAnObjectAway)
{
    Evas_Object* widget = AddObject("widget");
    Evas_Object* other = AddObject("other");
    mManager->ActivateRotateElementaryWidget(widget);
    mManager->ActivateRotateElementaryWidget(other);
    mManager->ActivateRotateElementaryWidget(widget);
    Recorder::Take();

    mManager->DeActivateRotateElementaryWidget(widget);

    EXPECT_EQ(Recorder::Take(), Deactivation("widget", widget));
    EXPECT_EQ(Stack(), Lines({"other", "widget"}));
}

TEST_F(RotaryEventManagerTest, OnlyMarksTheEndForAnObjectThatWasNeverActivated)
{
    mManager->ActivateRotateElementaryWidget(AddObject("widget"));
    Recorder::Take();

    mManager->DeActivateRotateElementaryWidget(AddObject("stranger"));

    EXPECT_EQ(Recorder::Take(), Lines({"mark(DeActivateRotateEvent)"}));
    EXPECT_EQ(Stack(), Lines({"widget"}));
}

TEST_F(RotaryEventManagerTest, ReportsANullObjectToTakeAway)
{
    mManager->DeActivateRotateElementaryWidget(nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"error(FindRotaryEventData) Invalid viewObject",
                                       "mark(DeActivateRotateEvent)"}));
}

TEST_F(RotaryEventManagerTest, OnlyMarksTheEndForAnEmptyRecord)
{
    mManager->ActivateRotateElementaryWidget(AddObject("widget"));
    Recorder::Take();

    mManager->DeActivateRotateEvent(nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"mark(DeActivateRotateEvent)"}));
    EXPECT_EQ(Stack(), Lines({"widget"}));
}

TEST_F(RotaryEventManagerTest, TellsRecordsOfOneObjectApart)
{
    Evas_Object* widget = AddObject("widget");
    mManager->ActivateRotateElementaryWidget(widget);
    Recorder::Take();

    mManager->DeActivateRotateEvent(MakeRecord(widget));

    EXPECT_EQ(Recorder::Take(), Deactivation("widget", widget));
    EXPECT_EQ(Stack(), Lines({"widget"}));
}

TEST_F(RotaryEventManagerTest, TakesTheDeleteCallbackOfAnotherRecordForTheSameObject)
{
    Evas_Object* widget = AddObject("widget");
    mManager->ActivateRotateElementaryWidget(widget);

    mManager->DeActivateRotateEvent(MakeRecord(widget));

    EXPECT_EQ(evas_object_event_callback_del(widget, EVAS_CALLBACK_DEL,
                                             RotaryEventManager::SViewObjectDeleteCB),
              nullptr);
    EXPECT_EQ(Stack(), Lines({"widget"}));
}

TEST_F(RotaryEventManagerTest, DeactivatesARecordThatIsNotOnTheEmptyStack)
{
    mManager->DeActivateRotateEvent(MakeRecord(AddObject("widget")));

    EXPECT_EQ(Recorder::Take(), Deactivation("widget", nullptr));
}

TEST_F(RotaryEventManagerTest, ActivatesNothingWhenTheNewTopIsEmpty)
{
    Evas_Object* widget = AddObject("widget");
    mManager->mRotaryEventDataList.push_back(nullptr);
    mManager->ActivateRotateElementaryWidget(widget);
    Recorder::Take();

    mManager->DeActivateRotateElementaryWidget(widget);

    EXPECT_EQ(Recorder::Take(), Lines({"eext_rotary_object_event_activated_set(widget, false)",
                                       "evas_object_event_callback_del(widget, 19, "
                                       "RotaryEventManager::SViewObjectDeleteCB)",
                                       "mark(DeActivateRotateEvent)"}));
    EXPECT_EQ(Stack(), Lines({"empty"}));
}

TEST_F(RotaryEventManagerTest, FindsTheOldestRecordOfAnObject)
{
    Evas_Object* widget = AddObject("widget");
    mManager->mRotaryEventDataList.push_back(nullptr);
    mManager->ActivateRotateElementaryWidget(AddObject("other"));
    mManager->ActivateRotateElementaryWidget(widget);
    const auto oldest = mManager->mRotaryEventDataList.back();
    mManager->ActivateRotateElementaryWidget(widget);
    Recorder::Take();

    EXPECT_EQ(mManager->FindRotaryEventData(widget), oldest);
    EXPECT_EQ(mManager->FindRotaryEventData(AddObject("stranger")), nullptr);
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(RotaryEventManagerTest, FindsTheOldestRecordOfAListener)
{
    FakeRotaryListener listener("a", AddObject("view"));
    FakeRotaryListener other("b", listener.GetRotaryViewObject());
    FakeRotaryListener stranger("c", listener.GetRotaryViewObject());
    mManager->mRotaryEventDataList.push_back(nullptr);
    mManager->RegisterEventListener(&other);
    mManager->RegisterEventListener(&listener);
    const auto oldest = mManager->mRotaryEventDataList.back();
    mManager->RegisterEventListener(&listener);
    Recorder::Take();

    EXPECT_EQ(mManager->FindRotaryEventData(&listener), oldest);
    EXPECT_EQ(mManager->FindRotaryEventData(&stranger), nullptr);
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(RotaryEventManagerTest, FindsNothingForNull)
{
    mManager->ActivateRotateElementaryWidget(AddObject("widget"));
    Recorder::Take();

    EXPECT_EQ(mManager->FindRotaryEventData(static_cast<Evas_Object*>(nullptr)), nullptr);
    EXPECT_EQ(mManager->FindRotaryEventData(static_cast<QivoUi::RotaryEventListener*>(nullptr)),
              nullptr);
    EXPECT_EQ(Recorder::Take(), Lines({"error(FindRotaryEventData) Invalid viewObject",
                                       "error(FindRotaryEventData) Invalid eventListener"}));
}

} // namespace
