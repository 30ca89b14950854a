#include "port/OffScreen.h"

#include "efl_extension.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

std::vector<std::string> gCalls;

// The data is the name of the callback in the list of calls.
void NoteCB(void* data, Evas_Object*, void* event_info)
{
    EXPECT_EQ(event_info, nullptr);
    gCalls.emplace_back(static_cast<const char*>(data));
}

class BackKey : public OffScreenTest
{
protected:
    void SetUp() override
    {
        OffScreenTest::SetUp();
        gCalls.clear();
    }

    static void OnBack(Evas_Object* object, const char* name)
    {
        eext_object_event_callback_add(object, EEXT_CALLBACK_BACK, NoteCB, const_cast<char*>(name));
    }

    void OnDetent(Eext_Rotary_Event_Cb callback)
    {
        Evas_Object* bezel = AddRectangle();
        eext_rotary_object_event_callback_priority_add(bezel, EVAS_CALLBACK_PRIORITY_DEFAULT,
                                                       callback, nullptr);
        eext_rotary_object_event_activated_set(bezel, EINA_TRUE);
    }

    Evas_Object* AddBox()
    {
        Evas_Object* box = elm_box_add(mWindow);
        evas_object_resize(box, kSize, kSize);
        evas_object_show(box);
        return box;
    }

    Evas_Object* AddInto(Evas_Object* box)
    {
        Evas_Object* inner = AddRectangle();
        evas_object_size_hint_min_set(inner, kSize, kSize);
        elm_box_pack_end(box, inner);
        return inner;
    }

    Evas_Object* AddNaviframe()
    {
        Evas_Object* naviframe = elm_naviframe_add(mWindow);
        evas_object_resize(naviframe, kSize, kSize);
        evas_object_show(naviframe);
        return naviframe;
    }

    static void DeletedCB(void* data, Evas*, Evas_Object*, void*)
    {
        *static_cast<bool*>(data) = true;
    }
    static void FinishedCB(void* data, Evas_Object*, void*) { *static_cast<bool*>(data) = true; }

    // A screen as applications build them: a layout, pushed.
    Evas_Object* PushScreen(Evas_Object* naviframe)
    {
        Evas_Object* layout = elm_layout_add(naviframe);
        bool isFinished = !elm_naviframe_top_item_get(naviframe);
        evas_object_smart_callback_add(naviframe, "transition,finished", FinishedCB, &isFinished);
        elm_naviframe_item_push(naviframe, "", nullptr, nullptr, layout, "basic");
        EXPECT_TRUE(Toolkit::RunUntil([&] { return isFinished; }));
        DeliverEvents();
        evas_object_smart_callback_del(naviframe, "transition,finished", FinishedCB);
        return layout;
    }
};

TEST_F(BackKey, ReachesAnObjectOnReleaseOfTheBackKeyAndOfEscape)
{
    OnBack(AddRectangle(), "screen");
    ReleaseKey("XF86Back");
    ReleaseKey("Escape");
    EXPECT_THAT(gCalls, ElementsAre("screen", "screen"));
}

TEST_F(BackKey, KeepsItsPressesFromTheHandlersAfterIt)
{
    std::vector<std::string> pressed;
    Ecore_Event_Handler* handler = ecore_event_handler_add(
        ECORE_EVENT_KEY_DOWN,
        [](void* data, int, void* event) -> Eina_Bool
        {
            static_cast<std::vector<std::string>*>(data)->emplace_back(
                static_cast<Ecore_Event_Key*>(event)->keyname);
            return ECORE_CALLBACK_PASS_ON;
        },
        &pressed);
    Evas_Object* screen = AddRectangle();
    OnBack(screen, "screen");
    for (const char* key : {"Escape", "XF86Back", "Return"})
        PressKey(key);
    evas_object_del(screen);
    DeliverEvents();
    PressKey("Escape");
    ecore_event_handler_del(handler);
    EXPECT_THAT(pressed, ElementsAre("Return", "Escape"));
    EXPECT_THAT(gCalls, IsEmpty());
}

TEST_F(BackKey, IsNoOtherKey)
{
    OnBack(AddRectangle(), "screen");
    ReleaseKey("Return");
    ReleaseKey("XF86PowerOff");
    ReleaseKey("xf86back");
    EXPECT_THAT(gCalls, IsEmpty());
}

TEST_F(BackKey, ReachesTheObjectOnTopAlone)
{
    Evas_Object* lower = AddRectangle();
    Evas_Object* upper = AddRectangle();
    OnBack(upper, "upper");
    OnBack(lower, "lower");
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("upper"));

    evas_object_raise(lower);
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("upper", "lower"));
}

TEST_F(BackKey, FollowsLayersBeforeTheOrderWithinThem)
{
    Evas_Object* high = AddRectangle();
    evas_object_layer_set(high, 10);
    OnBack(high, "high");
    OnBack(AddRectangle(), "new");
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("high"));
}

TEST_F(BackKey, ReachesWhatIsInsideAWidgetBeforeTheWidget)
{
    Evas_Object* box = AddBox();
    OnBack(AddInto(box), "inner");
    OnBack(box, "box");
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("inner"));
}

TEST_F(BackKey, PassesOverHiddenObjectsAndForgetsDeletedOnes)
{
    OnBack(AddRectangle(), "lower");
    for (auto* takeAway : {evas_object_hide, evas_object_del})
    {
        Evas_Object* upper = AddRectangle();
        OnBack(upper, "upper");
        takeAway(upper);
        ReleaseKey("XF86Back");
    }
    EXPECT_THAT(gCalls, ElementsAre("lower", "lower"));
}

TEST_F(BackKey, PassesOverObjectsInAHiddenWidget)
{
    OnBack(AddRectangle(), "lower");
    Evas_Object* box = AddBox();
    OnBack(AddInto(box), "inner");
    evas_object_hide(box);
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("lower"));
}

TEST_F(BackKey, PassesOverWhatHasNoAreaOnTheCanvas)
{
    struct
    {
        const char* place;
        Eina_Rectangle geometry;
    } const outOfSight[] = {
        {"no size", {0, 0, 0, 0}},
        {"no size in the middle", {kSize / 2, kSize / 2, 0, 0}},
        {"no width", {0, 0, 0, kSize}},
        {"no height", {0, 0, kSize, 0}},
        {"left of the canvas", {-kSize, 0, kSize, kSize}},
        {"right of the canvas", {kSize, 0, kSize, kSize}},
        {"above the canvas", {0, -kSize, kSize, kSize}},
        {"below the canvas", {0, kSize, kSize, kSize}},
    };
    OnBack(AddRectangle(), "in sight");
    for (const auto& [place, geometry] : outOfSight)
    {
        SCOPED_TRACE(place);
        Evas_Object* upper = AddRectangle();
        OnBack(upper, place);
        evas_object_geometry_set(upper, geometry.x, geometry.y, geometry.w, geometry.h);
        gCalls.clear();
        ReleaseKey("XF86Back");
        EXPECT_THAT(gCalls, ElementsAre("in sight"));
        evas_object_move(upper, 0, 0);
        evas_object_resize(upper, 1, 1);
        gCalls.clear();
        ReleaseKey("XF86Back");
        EXPECT_THAT(gCalls, ElementsAre(place));
        evas_object_del(upper);
    }
}

TEST_F(BackKey, PassesOverWhatIsClippedAway)
{
    OnBack(AddRectangle(), "in sight");
    Evas_Object* upper = AddRectangle();
    OnBack(upper, "clipped");
    evas_object_resize(upper, kSize, kSize / 2);
    Evas_Object* clip = AddRectangle();
    Evas_Object* outerClip = AddRectangle();
    evas_object_clip_set(clip, outerClip);
    evas_object_clip_set(upper, clip);
    ReleaseKey("XF86Back");

    // Each of the two leaves something, but not the same.
    evas_object_geometry_set(clip, 0, 0, kSize / 2, kSize);
    evas_object_geometry_set(outerClip, kSize / 2, 0, kSize / 2, kSize);
    ReleaseKey("XF86Back");
    evas_object_geometry_set(outerClip, 0, kSize / 2, kSize, kSize / 2);
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("clipped", "in sight", "in sight"));
}

TEST_F(BackKey, PassesOverAScreenThatIsBuiltAndNotPushed)
{
    Evas_Object* naviframe = AddNaviframe();
    OnBack(PushScreen(naviframe), "pushed");
    Evas_Object* layout = elm_layout_add(naviframe);
    elm_layout_theme_set(layout, "layout", "application", "default");
    evas_object_show(layout);
    OnBack(layout, "built");
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("pushed"));
}

TEST_F(BackKey, ReachesAScreenThatHasNotBeenLaidOutYet)
{
    Evas_Object* naviframe = AddNaviframe();
    OnBack(PushScreen(naviframe), "first");
    // Both events are worked off in one turn of the loop: nothing is drawn between them.
    ecore_job_add(
        [](void* data)
        {
            auto* frame = static_cast<Evas_Object*>(data);
            Evas_Object* layout = elm_layout_add(frame);
            elm_naviframe_item_insert_after(frame, elm_naviframe_top_item_get(frame), "", nullptr,
                                            nullptr, layout, "basic");
            OnBack(layout, "second");
        },
        naviframe);
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("second"));
}

TEST_F(BackKey, CountsAWindowAsInSightWhereverItStands)
{
    evas_object_move(mWindow, 2 * kSize, 2 * kSize);
    OnBack(mWindow, "window");
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("window"));
}

TEST_F(BackKey, FollowsTheScreensOfANaviframe)
{
    Evas_Object* naviframe = AddNaviframe();
    OnBack(PushScreen(naviframe), "first");
    Evas_Object* second = PushScreen(naviframe);
    OnBack(second, "second");
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("second"));

    bool isDeleted = false;
    evas_object_event_callback_add(second, EVAS_CALLBACK_DEL, DeletedCB, &isDeleted);
    elm_naviframe_item_pop(naviframe);
    ASSERT_TRUE(Toolkit::RunUntil([&] { return isDeleted; }));
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("second", "first"));
}

TEST_F(BackKey, PassesOverACoveredScreenWhenTheOneOnTopHasNoCallback)
{
    Evas_Object* naviframe = AddNaviframe();
    OnBack(PushScreen(naviframe), "covered");
    PushScreen(naviframe);
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, IsEmpty());
}

// The wheel is taken while events are filtered, so the press filter goes in the middle of that.
TEST_F(BackKey, BearsThatABezelCallbackDeletesTheLastObject)
{
    static Evas_Object* gLast = nullptr;
    OnDetent(
        [](void*, Evas_Object*, Eext_Rotary_Event_Info*) -> Eina_Bool
        {
            evas_object_del(gLast);
            return EINA_FALSE;
        });
    gLast = AddRectangle();
    OnBack(gLast, "deleted");
    TurnWheel(1);
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, IsEmpty());

    OnBack(AddRectangle(), "next");
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("next"));
}

TEST_F(BackKey, BearsThatABezelCallbackAddsAndDeletesTheOnlyObject)
{
    OnDetent(
        [](void*, Evas_Object* object, Eext_Rotary_Event_Info*) -> Eina_Bool
        {
            Evas_Object* only = evas_object_rectangle_add(evas_object_evas_get(object));
            OnBack(only, "only");
            evas_object_del(only);
            return EINA_FALSE;
        });
    TurnWheel(3);
    PressKey("Escape");
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, IsEmpty());
}

TEST_F(BackKey, CallsAllCallbacksOfAnObjectNewestFirst)
{
    Evas_Object* object = AddRectangle();
    OnBack(object, "old");
    OnBack(object, "new");
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("new", "old"));
}

TEST_F(BackKey, StillWorksAfterTheLastObjectWasDeleted)
{
    Evas_Object* first = AddRectangle();
    OnBack(first, "first");
    evas_object_del(first);
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, IsEmpty());
    OnBack(AddRectangle(), "second");
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("second"));
}

TEST_F(BackKey, LetsACallbackDeleteItsObjectAndCallsNoFurtherOneOfIt)
{
    Evas_Object* object = AddRectangle();
    OnBack(object, "old");
    eext_object_event_callback_add(
        object, EEXT_CALLBACK_BACK,
        [](void*, Evas_Object* deleted, void*)
        {
            gCalls.emplace_back("deletes");
            evas_object_del(deleted);
        },
        nullptr);
    ReleaseKey("XF86Back");
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("deletes"));
}

TEST_F(BackKey, CallsWhatACallbackAddsFromTheNextKeyOn)
{
    eext_object_event_callback_add(
        AddRectangle(), EEXT_CALLBACK_BACK,
        [](void*, Evas_Object* object, void*)
        {
            gCalls.emplace_back("adds");
            OnBack(object, "added");
        },
        nullptr);
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("adds"));
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("adds", "added", "adds"));
}

TEST_F(BackKey, ReachesTheWindowOfTheKeyBeforeOtherWindows)
{
    Evas_Object* dialog = elm_win_add(nullptr, "dialog", ELM_WIN_BASIC);
    evas_object_resize(dialog, kSize, kSize);
    evas_object_show(dialog);
    Evas_Object* inDialog = evas_object_rectangle_add(evas_object_evas_get(dialog));
    evas_object_resize(inDialog, kSize, kSize);
    evas_object_show(inDialog);
    OnBack(AddRectangle(), "older window");
    OnBack(inDialog, "newer window");

    // No event of this engine names a window, so neither window is the key's.
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("newer window"));
    evas_object_del(dialog);
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("newer window", "older window"));
}

TEST_F(BackKey, RefusesNullArgumentsWithOneLineEach)
{
    eext_object_event_callback_add(nullptr, EEXT_CALLBACK_BACK, NoteCB, nullptr);
    eext_object_event_callback_add(AddRectangle(), EEXT_CALLBACK_BACK, nullptr, nullptr);
    EXPECT_THAT(LogLines(),
                ElementsAre(HasSubstr("object is null"), HasSubstr("callback is null")));
    ReleaseKey("XF86Back");
}

} // namespace
