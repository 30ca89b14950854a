#include "common/NaviFrameItemPopHandler.h"

#include "common/DirtyMemory.h"
#include "common/navi-frame/NaviFrameFixture.h"

using QivoUi::NaviFrame;
using QivoUi::NaviFrameItemPopHandler;

namespace
{

class NaviFrameItemPopHandlerTest : public NaviFrameFixture
{
protected:
    // An item on the stack that no handle is bound to, "item1", then "item2".
    Elm_Object_Item* PushBareItem()
    {
        Elm_Object_Item* item =
            elm_naviframe_item_push(mFrame->mNaviFrame, "", nullptr, nullptr, nullptr, "empty");
        Recorder::Take();
        return item;
    }

    static std::string Name(const Elm_Object_Item* item) { return Recorder::NameOf(item); }
};

TEST_F(NaviFrameItemPopHandlerTest, StartsUnboundAndWithoutAListener)
{
    InDirtyMemory<NaviFrameItemPopHandler> handle;

    EXPECT_EQ(handle->mNaviFrameItem, nullptr);
    EXPECT_EQ(handle->mPopEventListener, nullptr);
}

TEST_F(NaviFrameItemPopHandlerTest, BindsToAnItem)
{
    NaviFrameItemPopHandler handle;
    Recorder::Name(&handle, "handle");
    Elm_Object_Item* item = PushBareItem();

    handle.SetNaviframeItem(item);

    EXPECT_EQ(handle.mNaviFrameItem, item);
    EXPECT_EQ(Recorder::Take(), Lines({"elm_naviframe_item_pop_cb_set(item1, "
                                       "NaviFrameItemPopHandler::SNaviFramePopedCB, handle)",
                                       "elm_object_item_data_set(item1, handle)",
                                       "elm_object_item_del_cb_set(item1, "
                                       "NaviFrameItemPopHandler::NaviFrameItemDelCB)"}));
}

TEST_F(NaviFrameItemPopHandlerTest, BindingToNoItemChangesNothing)
{
    auto handle = PushHandle();
    Elm_Object_Item* item = handle->mNaviFrameItem;
    Recorder::Take();

    handle->SetNaviframeItem(nullptr);

    EXPECT_EQ(handle->mNaviFrameItem, item);
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(NaviFrameItemPopHandlerTest, TakesItsCallbacksOffAnItemThatOutlivesIt)
{
    auto* handle = new NaviFrameItemPopHandler;
    Recorder::Name(handle, "handle");
    Elm_Object_Item* item = PushBareItem();
    handle->SetNaviframeItem(item);
    Recorder::Take();

    delete handle;

    EXPECT_EQ(Recorder::Take(), Lines({"elm_naviframe_item_pop_cb_set(item1, null, handle)",
                                       "elm_object_item_del_cb_set(item1, null)"}));
    EXPECT_EQ(elm_object_item_data_get(item), handle);
    EXPECT_EQ(Stack(), Lines({"item1"}));
}

TEST_F(NaviFrameItemPopHandlerTest, LeavesTheToolkitAloneWhenItDiesUnbound)
{
    {
        NaviFrameItemPopHandler handle;
    }

    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(NaviFrameItemPopHandlerTest, AnItemThatOutlivedItsHandleKeepsItsListenersEntry)
{
    FakeStateListener listener;
    Elm_Object_Item* item = Push(&listener);
    mHandles.clear();
    Recorder::Take();

    mFrame->DeleteItem(item);

    EXPECT_EQ(Recorder::Take(), Lines({"elm_object_item_del(item1)"}));
    EXPECT_EQ(mFrame->mStateListenerMap.count(item), 1u);
}

TEST_F(NaviFrameItemPopHandlerTest, PopsItsItemWithBothArguments)
{
    FakeTransitionListener transition;
    Push();
    auto handle = PushHandle();

    handle->Pop(true, &transition);

    EXPECT_EQ(Recorder::TakeOnly({"elm_naviframe_item_pop("}),
              Lines({"elm_naviframe_item_pop(naviframe1)"}));
    EXPECT_EQ(mFrame->mPopTransitionEventListener, &transition);
    EXPECT_EQ(handle->mNaviFrameItem, nullptr);
    EXPECT_EQ(Stack(), Lines({"item1"}));
}

TEST_F(NaviFrameItemPopHandlerTest, PopsItsItemWithoutAnimation)
{
    FakeTransitionListener transition;
    Push();
    auto handle = PushHandle();
    Recorder::Take();

    handle->Pop(false, &transition);

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_naviframe_top_item_get(naviframe1)",
                     "elm_naviframe_bottom_item_get(naviframe1)", "elm_object_item_del(item2)",
                     "elm_naviframe_top_item_get(naviframe1)"}));
    EXPECT_EQ(mFrame->mPopTransitionEventListener, nullptr);
    EXPECT_EQ(handle->mNaviFrameItem, nullptr);
}

TEST_F(NaviFrameItemPopHandlerTest, PopsEverythingAboveItsItem)
{
    auto handle = PushHandle();
    Push();
    Push();
    Recorder::Take();

    handle->PopTo();

    EXPECT_EQ(
        Recorder::TakeOnly({"elm_naviframe_item_pop_to", "info"}),
        Lines({"elm_naviframe_item_pop_to(item1)", "info(PopToItem) pop to animation start"}));
    EXPECT_EQ(Stack(), Lines({"item1"}));
}

TEST_F(NaviFrameItemPopHandlerTest, LooksForTheTopOnceWhenNothingIsAboveItsItem)
{
    auto handle = PushHandle();
    Recorder::Take();

    handle->PopTo();

    EXPECT_EQ(Recorder::Take(), Lines({"elm_naviframe_top_item_get(naviframe1)"}));
}

TEST_F(NaviFrameItemPopHandlerTest, DeletesItsItemAndIsUnboundThen)
{
    auto handle = PushHandle();
    Recorder::Take();

    handle->DeleteItem();

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_object_item_del(item1)", "elm_naviframe_top_item_get(naviframe1)"}));
    EXPECT_EQ(handle->mNaviFrameItem, nullptr);
    EXPECT_TRUE(mFrame->IsNaviFrameEmpty());
}

TEST_F(NaviFrameItemPopHandlerTest, IsUnboundByADeletionThatTheToolkitDoesNotReport)
{
    auto handle = PushHandle();
    Recorder::Fail("elm_object_item_del");
    Recorder::Take();

    handle->DeleteItem();

    EXPECT_EQ(Recorder::Take(), Lines({"elm_object_item_del(item1)"}));
    EXPECT_EQ(handle->mNaviFrameItem, nullptr);
    elm_object_item_del_cb_set(elm_naviframe_top_item_get(mFrame->mNaviFrame), nullptr);
}

TEST_F(NaviFrameItemPopHandlerTest, DeletesTheItemsAboveItsOwn)
{
    auto handle = PushHandle();
    Push();
    Push();
    Recorder::Take();

    handle->DeleteAboveNaviFrameItem();

    EXPECT_EQ(Recorder::TakeOnly({"elm_naviframe_items_get", "elm_object_item_del("}),
              Lines({"elm_naviframe_items_get(naviframe1)", "elm_object_item_del(item2)",
                     "elm_object_item_del(item3)"}));
    EXPECT_NE(handle->mNaviFrameItem, nullptr);
    EXPECT_EQ(mHandles[1]->mNaviFrameItem, nullptr);
    EXPECT_EQ(mHandles[2]->mNaviFrameItem, nullptr);
}

TEST_F(NaviFrameItemPopHandlerTest, DeletesTheItemsBetweenItsOwnAndALowerOne)
{
    auto lower = PushHandle();
    Push();
    auto upper = PushHandle();
    Push();
    Recorder::Take();

    upper->DeleteBetweenNaviFrameItem(lower);

    EXPECT_EQ(Recorder::TakeOnly({"eina_list_data_find_list", "elm_object_item_del("}),
              Lines({"eina_list_data_find_list(list1, item3)",
                     "eina_list_data_find_list(list1, item1)", "elm_object_item_del(item2)"}));
    EXPECT_EQ(Stack(), Lines({"item1", "item3", "item4"}));
}

TEST_F(NaviFrameItemPopHandlerTest, DeletesNothingBetweenWhenEitherIsUnbound)
{
    auto lower = PushHandle();
    Push();
    auto upper = PushHandle();
    auto unbound = std::make_shared<NaviFrameItemPopHandler>();
    Recorder::Take();

    upper->DeleteBetweenNaviFrameItem(unbound);
    unbound->DeleteBetweenNaviFrameItem(lower);
    unbound->DeleteBetweenNaviFrameItem(unbound);

    EXPECT_EQ(Recorder::Take(), Lines());
    EXPECT_EQ(Stack(), Lines({"item1", "item2", "item3"}));
}

TEST_F(NaviFrameItemPopHandlerTest, DoesNothingUnboundAndSaysSoOnlyForTheItemsAbove)
{
    FakeTransitionListener transition;
    NaviFrameItemPopHandler handle;
    NaviFrame::Destroy();
    Recorder::Take();

    handle.Pop(true, &transition);
    handle.Pop(false, &transition);
    handle.PopTo();
    handle.DeleteItem();
    EXPECT_EQ(Recorder::Take(), Lines());

    handle.DeleteAboveNaviFrameItem();
    EXPECT_EQ(Recorder::Take(),
              Lines({"error(DeleteAboveNaviFrameItem) [Failed] Invalid NaviFrameItem"}));
    EXPECT_EQ(NaviFrame::mInstance, nullptr);
}

TEST_F(NaviFrameItemPopHandlerTest, IsOfNoUseAfterTheNaviframePoppedItsItem)
{
    Push();
    auto handle = PushHandle();
    mFrame->PopTopItem();
    Recorder::Take();

    handle->Pop(true, nullptr);
    handle->PopTo();
    handle->DeleteItem();
    handle->DeleteAboveNaviFrameItem();

    EXPECT_EQ(Recorder::Take(),
              Lines({"error(DeleteAboveNaviFrameItem) [Failed] Invalid NaviFrameItem"}));
}

} // namespace
