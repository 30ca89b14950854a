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
        EXPECT_TRUE(RunUntil([&] { return isFinished; }));
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
    Evas_Object* box = elm_box_add(mWindow);
    evas_object_show(box);
    Evas_Object* inner = AddRectangle();
    elm_box_pack_end(box, inner);
    OnBack(inner, "inner");
    OnBack(box, "box");
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("inner"));
}

TEST_F(BackKey, PassesOverHiddenObjects)
{
    OnBack(AddRectangle(), "lower");
    Evas_Object* upper = AddRectangle();
    OnBack(upper, "upper");
    evas_object_hide(upper);
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("lower"));
}

TEST_F(BackKey, PassesOverObjectsInAHiddenWidget)
{
    OnBack(AddRectangle(), "lower");
    Evas_Object* box = elm_box_add(mWindow);
    evas_object_show(box);
    Evas_Object* inner = AddRectangle();
    elm_box_pack_end(box, inner);
    OnBack(inner, "inner");
    evas_object_hide(box);
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("lower"));
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
    ASSERT_TRUE(RunUntil([&] { return isDeleted; }));
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

TEST_F(BackKey, CallsAllCallbacksOfAnObjectNewestFirst)
{
    Evas_Object* object = AddRectangle();
    OnBack(object, "old");
    OnBack(object, "new");
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("new", "old"));
}

TEST_F(BackKey, ForgetsDeletedObjects)
{
    OnBack(AddRectangle(), "lower");
    Evas_Object* upper = AddRectangle();
    OnBack(upper, "upper");
    evas_object_del(upper);
    ReleaseKey("XF86Back");
    EXPECT_THAT(gCalls, ElementsAre("lower"));
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
    evas_object_show(dialog);
    Evas_Object* inDialog = evas_object_rectangle_add(evas_object_evas_get(dialog));
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
