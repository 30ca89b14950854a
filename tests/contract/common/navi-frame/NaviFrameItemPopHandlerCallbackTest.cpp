#include "common/navi-frame/NaviFrameFixture.h"

using QivoUi::NaviFrame;
using QivoUi::NaviFrameItemPopHandler;

namespace
{

using NaviFrameItemPopHandlerCallbackTest = NaviFrameFixture;

TEST_F(NaviFrameItemPopHandlerCallbackTest, ConsentsToAPopWithoutAListenerAndIsUnboundThen)
{
    auto handle = PushHandle();
    Recorder::Take();

    EXPECT_TRUE(NaviFrameItemPopHandler::SNaviFramePopedCB(handle.get(), handle->mNaviFrameItem));

    EXPECT_EQ(handle->mNaviFrameItem, nullptr);
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(NaviFrameItemPopHandlerCallbackTest, AsksItsListenerBeforeItConsentsAndIsUnboundThen)
{
    FakePopListener pop;
    auto handle = PushHandle();
    handle->mPopEventListener = &pop;
    Recorder::Take();
    bool wasBound = false;
    pop.mReactions["OnViewPoped"] = [&] { wasBound = handle->mNaviFrameItem != nullptr; };

    EXPECT_TRUE(NaviFrameItemPopHandler::SNaviFramePopedCB(handle.get(), handle->mNaviFrameItem));

    EXPECT_TRUE(wasBound);
    EXPECT_EQ(handle->mNaviFrameItem, nullptr);
    EXPECT_EQ(Recorder::Take(), Lines({"pop.OnViewPoped"}));
}

TEST_F(NaviFrameItemPopHandlerCallbackTest, ARefusedPopKeepsItemAndHandleAndALaterPopWorks)
{
    FakePopListener pop;
    pop.mIsAllowed = false;
    Push();
    auto handle = PushHandle();
    handle->mPopEventListener = &pop;
    Recorder::Take();

    handle->Pop(true, nullptr);

    EXPECT_EQ(Recorder::TakeOnly({"pop", "info"}),
              Lines({"pop.OnViewPoped", "info(PopItem) pop animation start"}));
    EXPECT_EQ(Recorder::NameOf(handle->mNaviFrameItem), "item2");
    EXPECT_EQ(Stack(), Lines({"item1", "item2"}));

    pop.mIsAllowed = true;
    handle->Pop(true, nullptr);

    EXPECT_EQ(handle->mNaviFrameItem, nullptr);
    EXPECT_EQ(Stack(), Lines({"item1"}));
}

TEST_F(NaviFrameItemPopHandlerCallbackTest, ADeletionAsksNobody)
{
    FakePopListener pop;
    pop.mIsAllowed = false;
    Push();
    auto handle = PushHandle();
    handle->mPopEventListener = &pop;
    Recorder::Take();

    handle->Pop(false, nullptr);

    EXPECT_EQ(Recorder::TakeOnly({"pop"}), Lines());
    EXPECT_EQ(Stack(), Lines({"item1"}));
}

TEST_F(NaviFrameItemPopHandlerCallbackTest, TellsTheFrameOfTheDeletionWhileStillBound)
{
    FakeStateListener top("top");
    auto handle = PushHandle();
    Push(&top);
    Recorder::Take();
    bool wasBound = false;
    top.mReactions["OnItemResume"] = [&] { wasBound = handle->mNaviFrameItem != nullptr; };

    NaviFrameItemPopHandler::NaviFrameItemDelCB(handle.get(), mFrame->mNaviFrame,
                                                handle->mNaviFrameItem);

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_naviframe_top_item_get(naviframe1)", "top.OnItemResume"}));
    EXPECT_TRUE(wasBound);
    EXPECT_EQ(handle->mNaviFrameItem, nullptr);
}

TEST_F(NaviFrameItemPopHandlerCallbackTest, TellsTheFrameWhichItemWasDeleted)
{
    FakeStateListener listener;
    Elm_Object_Item* item = Push(&listener);
    NaviFrameItemPopHandler unbound;

    NaviFrameItemPopHandler::NaviFrameItemDelCB(&unbound, mFrame->mNaviFrame, item);

    EXPECT_TRUE(mFrame->mStateListenerMap.empty());
}

TEST_F(NaviFrameItemPopHandlerCallbackTest, IsUnboundByADeletionThatNamesNoItem)
{
    auto handle = PushHandle();
    Elm_Object_Item* item = handle->mNaviFrameItem;

    NaviFrameItemPopHandler::NaviFrameItemDelCB(handle.get(), mFrame->mNaviFrame, nullptr);

    EXPECT_EQ(handle->mNaviFrameItem, nullptr);
    elm_object_item_del_cb_set(item, nullptr);
}

TEST_F(NaviFrameItemPopHandlerCallbackTest, ADeletionAfterTheFramesEndMakesAFreshEmptyFrame)
{
    auto handle = PushHandle();
    Elm_Object_Item* item = handle->mNaviFrameItem;
    NaviFrame::Destroy();
    Recorder::Take();

    elm_object_item_del(item);

    EXPECT_EQ(handle->mNaviFrameItem, nullptr);
    ASSERT_NE(NaviFrame::mInstance, nullptr);
    EXPECT_TRUE(NaviFrame::mIsAlive);
    EXPECT_EQ(NaviFrame::mInstance->mNaviFrame, nullptr);
    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_object_item_del(item1)", "elm_naviframe_top_item_get(null)"}));
}

TEST_F(NaviFrameItemPopHandlerCallbackTest, OutlivesAnItemThatGoesWithTheWidget)
{
    auto handle = PushHandle();

    evas_object_del(mFrame->mNaviFrame);
    // A frame must not outlive its widget, other than here.
    mFrame->mNaviFrame = nullptr;

    EXPECT_EQ(handle->mNaviFrameItem, nullptr);
    handle->Pop(true, nullptr);
}

TEST_F(NaviFrameItemPopHandlerCallbackTest, IsUnboundAtOnceByAnAnimatedPopWhoseItemDiesLater)
{
    FakeStateListener below("below");
    Push(&below);
    auto handle = PushHandle();
    Recorder::Take();

    handle->Pop(true, nullptr);
    EXPECT_EQ(handle->mNaviFrameItem, nullptr);
    EXPECT_EQ(Recorder::TakeOnly({"below"}), Lines());

    TakeUntil("below.OnItemResume");
    EXPECT_EQ(handle->mNaviFrameItem, nullptr);
}

} // namespace
