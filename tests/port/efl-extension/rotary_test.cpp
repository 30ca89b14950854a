#include "port/OffScreen.h"

#include "efl_extension.h"

#include <Ecore_Eo.h>
#include <gmock/gmock.h>

#include <unistd.h>

#include <climits>

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace
{

struct Detent
{
    std::string name;
    int direction;
    unsigned int time;

    bool operator==(const Detent& other) const
    {
        return name == other.name && direction == other.direction && time == other.time;
    }
};

std::vector<Detent> gDetents;
Eina_Bool gResult = EINA_FALSE;

// The data is the name of the callback in the list of detents.
Eina_Bool NoteCB(void* data, Evas_Object*, Eext_Rotary_Event_Info* info)
{
    gDetents.push_back({static_cast<const char*>(data), info->direction, info->time_stamp});
    return gResult;
}

std::vector<std::string> Names()
{
    std::vector<std::string> names;
    for (const Detent& detent : gDetents)
        names.push_back(detent.name);
    return names;
}

// Of the callbacks that are added or removed, those for the end of the toolkit.
int CountOfTermination(const Efl_Event* event)
{
    const auto* item = static_cast<const Efl_Callback_Array_Item_Full*>(event->info);
    int count = 0;
    for (; item->desc; ++item)
        count += item->desc == EFL_APP_EVENT_TERMINATE ? 1 : 0;
    return count;
}

class Rotary : public OffScreenTest
{
protected:
    void SetUp() override
    {
        OffScreenTest::SetUp();
        gDetents.clear();
        gResult = EINA_FALSE;
    }

    static void OnDetent(Evas_Object* object, const char* name,
                         Evas_Callback_Priority priority = EVAS_CALLBACK_PRIORITY_DEFAULT)
    {
        EXPECT_TRUE(eext_rotary_object_event_callback_priority_add(object, priority, NoteCB,
                                                                   const_cast<char*>(name)));
    }

    Evas_Object* AddActivated(const char* name)
    {
        Evas_Object* object = AddRectangle();
        OnDetent(object, name);
        eext_rotary_object_event_activated_set(object, EINA_TRUE);
        return object;
    }
};

TEST_F(Rotary, TurnsClockwiseWhenTheWheelGoesDownWithTheEventsOwnTime)
{
    AddActivated("object");
    TurnWheel(1, 1234);
    TurnWheel(-1, 5678);
    EXPECT_THAT(gDetents,
                ElementsAre(Detent{"object", EEXT_ROTARY_DIRECTION_CLOCKWISE, 1234},
                            Detent{"object", EEXT_ROTARY_DIRECTION_COUNTER_CLOCKWISE, 5678}));
}

TEST_F(Rotary, GivesADetentANotch)
{
    AddActivated("object");
    TurnWheel(-3, 7);
    EXPECT_THAT(gDetents, SizeIs(3));
    EXPECT_THAT(gDetents, Each(Detent{"object", EEXT_ROTARY_DIRECTION_COUNTER_CLOCKWISE, 7}));
}

TEST_F(Rotary, GivesAtMostAHundredDetentsAnEvent)
{
    AddActivated("object");
    TurnWheel(INT_MIN);
    EXPECT_THAT(gDetents, SizeIs(100));
}

TEST_F(Rotary, GivesNoDetentForAHorizontalWheelNorForNone)
{
    AddActivated("object");
    TurnWheel(1, 0, 1);
    TurnWheel(0);
    EXPECT_THAT(gDetents, IsEmpty());
}

TEST_F(Rotary, GivesNoDetentWithoutAnActivatedObject)
{
    OnDetent(AddRectangle(), "object");
    TurnWheel(1);
    EXPECT_THAT(gDetents, IsEmpty());
}

TEST_F(Rotary, TakesTheWheelFromScrollersWhileAnObjectIsRegistered)
{
    Evas_Object* scroller = AddScroller(kSize, 4 * kSize);
    auto top = [=]
    {
        int y = 0;
        elm_scroller_region_get(scroller, nullptr, &y, nullptr, nullptr);
        return y;
    };
    Evas_Object* object = evas_object_rectangle_add(mCanvas);
    OnDetent(object, "object");
    bool isScrolled = false;
    evas_object_smart_callback_add(
        scroller, "scroll",
        [](void* data, Evas_Object*, void*) { *static_cast<bool*>(data) = true; }, &isScrolled);
    TurnWheel(1);
    TurnWheel(1, 0, 1);
    DeliverEvents();
    EXPECT_FALSE(isScrolled);
    EXPECT_EQ(top(), 0);

    // The same wheel does scroll it once nobody asks for the bezel.
    evas_object_del(object);
    TurnWheel(1);
    EXPECT_TRUE(Toolkit::RunUntil([&] { return isScrolled && top() > 0; }));
}

TEST_F(Rotary, ReachesTheLastActivatedObjectAlone)
{
    AddActivated("first");
    AddActivated("second");
    TurnWheel(1);
    EXPECT_THAT(Names(), ElementsAre("second"));
}

TEST_F(Rotary, KeepsTheActivatedObjectWhenAnotherOneIsDeactivated)
{
    AddActivated("activated");
    Evas_Object* other = AddRectangle();
    OnDetent(other, "other");
    eext_rotary_object_event_activated_set(other, EINA_FALSE);
    TurnWheel(1);
    EXPECT_THAT(Names(), ElementsAre("activated"));
}

TEST_F(Rotary, ReachesNobodyAfterDeactivation)
{
    Evas_Object* object = AddActivated("object");
    eext_rotary_object_event_activated_set(object, EINA_FALSE);
    TurnWheel(1);
    EXPECT_THAT(gDetents, IsEmpty());
}

TEST_F(Rotary, CallsLowerPriorityValuesFirstAndOfEqualOnesTheNewest)
{
    Evas_Object* object = AddActivated("default, old");
    OnDetent(object, "after", EVAS_CALLBACK_PRIORITY_AFTER);
    OnDetent(object, "default, new");
    OnDetent(object, "before", EVAS_CALLBACK_PRIORITY_BEFORE);
    TurnWheel(1);
    EXPECT_THAT(Names(), ElementsAre("before", "default, new", "default, old", "after"));
}

TEST_F(Rotary, StopsAtACallbackThatReturnsTrue)
{
    Evas_Object* object = AddActivated("later");
    OnDetent(object, "stops", EVAS_CALLBACK_PRIORITY_BEFORE);
    gResult = EINA_TRUE;
    TurnWheel(2);
    EXPECT_THAT(Names(), ElementsAre("stops", "stops"));
}

TEST_F(Rotary, TakesTheSameCallbackAgainAsASecondRegistration)
{
    Evas_Object* object = AddActivated("old");
    OnDetent(object, "new");
    TurnWheel(1);
    EXPECT_THAT(Names(), ElementsAre("new", "old"));
}

TEST_F(Rotary, RemovesTheNewestRegistrationAndReturnsItsData)
{
    Evas_Object* object = AddActivated("old");
    OnDetent(object, "new");
    EXPECT_STREQ(static_cast<char*>(eext_rotary_object_event_callback_del(object, NoteCB)), "new");
    TurnWheel(1);
    EXPECT_THAT(Names(), ElementsAre("old"));
    EXPECT_STREQ(static_cast<char*>(eext_rotary_object_event_callback_del(object, NoteCB)), "old");
    EXPECT_EQ(eext_rotary_object_event_callback_del(object, NoteCB), nullptr);
    TurnWheel(1);
    EXPECT_THAT(gDetents, SizeIs(1));
}

TEST_F(Rotary, TakesActivationFromADeletedObject)
{
    Evas_Object* object = AddActivated("deleted");
    evas_object_del(object);
    TurnWheel(1);
    EXPECT_THAT(gDetents, IsEmpty());
    AddActivated("next");
    TurnWheel(1);
    EXPECT_THAT(Names(), ElementsAre("next"));
}

TEST_F(Rotary, BearsAnObjectThatIsActivatedAgainWhileItDies)
{
    Evas_Object* object = AddRectangle();
    evas_object_event_callback_add(
        object, EVAS_CALLBACK_DEL,
        [](void*, Evas*, Evas_Object* dying, void*)
        {
            eext_rotary_object_event_activated_set(dying, EINA_FALSE);
            eext_rotary_object_event_activated_set(dying, EINA_TRUE);
        },
        nullptr);
    eext_rotary_object_event_activated_set(object, EINA_TRUE);
    evas_object_del(object);
    TurnWheel(1);
    AddActivated("next");
    TurnWheel(1);
    EXPECT_THAT(Names(), ElementsAre("next"));
}

TEST_F(Rotary, LetsACallbackDeleteItsObjectAndCallsNoFurtherOneOfIt)
{
    Evas_Object* object = AddActivated("further");
    eext_rotary_object_event_callback_priority_add(
        object, EVAS_CALLBACK_PRIORITY_BEFORE,
        [](void*, Evas_Object* deleted, Eext_Rotary_Event_Info*) -> Eina_Bool
        {
            evas_object_del(deleted);
            return EINA_FALSE;
        },
        nullptr);
    TurnWheel(3);
    EXPECT_THAT(gDetents, IsEmpty());
}

// Another one's filter runs while events are filtered, and the rotary's own goes in it.
TEST_F(Rotary, BearsThatAnEventFilterDeletesTheLastObject)
{
    Evas_Object* object = AddActivated("deleted");
    Ecore_Event_Filter* filter = ecore_event_filter_add(
        nullptr,
        [](void* data, void*, int type, void*) -> Eina_Bool
        {
            if (type == ECORE_EVENT_KEY_DOWN)
                evas_object_del(*static_cast<Evas_Object**>(data));
            return EINA_TRUE;
        },
        nullptr, &object);
    PressKey("Return");
    TurnWheel(1);
    EXPECT_THAT(gDetents, IsEmpty());
    AddActivated("next");
    TurnWheel(1);
    EXPECT_THAT(Names(), ElementsAre("next"));
    ecore_event_filter_del(filter);
}

TEST_F(Rotary, WorksAgainAfterTheToolkitWasStartedAnew)
{
    // In a process of its own, for what the toolkit keeps at its end stays behind with each life.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto liveTwice = [this]
    {
        AddActivated("first life");
        TurnWheel(1);
        OffScreenTest::TearDown();
        RestartToolkit();
        OffScreenTest::SetUp();
        AddActivated("second life");
        TurnWheel(1);
        _exit(Names() == std::vector<std::string>{"first life", "second life"} ? 0 : 1);
    };
    EXPECT_EXIT(liveTwice(), testing::ExitedWithCode(0), "");
}

TEST_F(Rotary, LeavesNothingOnALoopThatGoesOnAfterItsTermination)
{
    Eo* loop = efl_main_loop_get();
    int left = 0;
    const auto add = [](void* data, const Efl_Event* event)
    { *static_cast<int*>(data) += CountOfTermination(event); };
    const auto remove = [](void* data, const Efl_Event* event)
    { *static_cast<int*>(data) -= CountOfTermination(event); };
    efl_event_callback_add(loop, EFL_EVENT_CALLBACK_ADD, add, &left);
    efl_event_callback_add(loop, EFL_EVENT_CALLBACK_DEL, remove, &left);
    // The one that is there ends with the first.
    efl_event_callback_call(loop, EFL_APP_EVENT_TERMINATE, nullptr);
    left = 0;
    AddActivated("object");
    EXPECT_EQ(left, 1);
    efl_event_callback_call(loop, EFL_APP_EVENT_TERMINATE, nullptr);
    EXPECT_EQ(left, 0);
    efl_event_callback_del(loop, EFL_EVENT_CALLBACK_ADD, add, &left);
    efl_event_callback_del(loop, EFL_EVENT_CALLBACK_DEL, remove, &left);
    AddActivated("next");
    TurnWheel(1);
    EXPECT_THAT(Names(), ElementsAre("next"));
}

TEST_F(Rotary, LetsACallbackRemoveALaterOne)
{
    Evas_Object* object = AddActivated("removed");
    eext_rotary_object_event_callback_priority_add(
        object, EVAS_CALLBACK_PRIORITY_BEFORE,
        [](void*, Evas_Object* of, Eext_Rotary_Event_Info*) -> Eina_Bool
        {
            eext_rotary_object_event_callback_del(of, NoteCB);
            return EINA_FALSE;
        },
        nullptr);
    TurnWheel(1);
    EXPECT_THAT(gDetents, IsEmpty());
}

TEST_F(Rotary, CallsWhatACallbackAddsFromTheNextDetentOn)
{
    Evas_Object* object = AddRectangle();
    eext_rotary_object_event_activated_set(object, EINA_TRUE);
    eext_rotary_object_event_callback_priority_add(
        object, EVAS_CALLBACK_PRIORITY_BEFORE,
        [](void*, Evas_Object* to, Eext_Rotary_Event_Info* info) -> Eina_Bool
        {
            if (info->time_stamp == 1)
                OnDetent(to, "added");
            return EINA_FALSE;
        },
        nullptr);
    TurnWheel(1, 1);
    EXPECT_THAT(gDetents, IsEmpty());
    TurnWheel(1, 2);
    EXPECT_THAT(Names(), ElementsAre("added"));
}

TEST_F(Rotary, GivesTheNextDetentToTheObjectThatACallbackActivates)
{
    static Evas_Object* gNext = nullptr;
    gNext = AddRectangle();
    OnDetent(gNext, "next");
    Evas_Object* object = AddActivated("first");
    eext_rotary_object_event_callback_priority_add(
        object, EVAS_CALLBACK_PRIORITY_AFTER,
        [](void*, Evas_Object*, Eext_Rotary_Event_Info*) -> Eina_Bool
        {
            eext_rotary_object_event_activated_set(gNext, EINA_TRUE);
            return EINA_FALSE;
        },
        nullptr);
    TurnWheel(2);
    EXPECT_THAT(Names(), ElementsAre("first", "next"));
}

TEST_F(Rotary, RefusesNullArgumentsWithOneLineEach)
{
    EXPECT_FALSE(eext_rotary_object_event_callback_priority_add(nullptr, 0, NoteCB, nullptr));
    EXPECT_FALSE(
        eext_rotary_object_event_callback_priority_add(AddRectangle(), 0, nullptr, nullptr));
    EXPECT_EQ(eext_rotary_object_event_callback_del(nullptr, NoteCB), nullptr);
    eext_rotary_object_event_activated_set(nullptr, EINA_TRUE);
    EXPECT_THAT(LogLines(), ElementsAre(HasSubstr("object is null"), HasSubstr("callback is null"),
                                        HasSubstr("object is null"), HasSubstr("object is null")));
}

} // namespace
