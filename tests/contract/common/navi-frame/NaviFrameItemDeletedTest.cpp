#include "common/navi-frame/NaviFrameFixture.h"

using QivoUi::NaviFrame;

namespace
{

using NaviFrameItemDeletedTest = NaviFrameFixture;

TEST_F(NaviFrameItemDeletedTest, DeletingAScreenBelowResumesTheTopOneAgain)
{
    FakeStateListener below("below");
    FakeStateListener top("top");
    Elm_Object_Item* item = Push(&below);
    Push(&top);
    Recorder::Take();

    mFrame->DeleteItem(item);

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_object_item_del(item1)", "elm_naviframe_top_item_get(naviframe1)",
                     "top.OnItemResume"}));
    EXPECT_EQ(mFrame->mStateListenerMap.size(), 1u);
    EXPECT_EQ(mFrame->mStateListenerMap.count(item), 0u);
}

TEST_F(NaviFrameItemDeletedTest, DeletingSeveralScreensResumesTheTopOneForEach)
{
    FakeStateListener top("top");
    Elm_Object_Item* bottom = Push();
    Push();
    Push();
    Elm_Object_Item* item = Push(&top);
    Recorder::Take();

    mFrame->DeleteBetweenItems(item, bottom);

    EXPECT_EQ(Recorder::TakeOnly({"top"}), Lines({"top.OnItemResume", "top.OnItemResume"}));
}

TEST_F(NaviFrameItemDeletedTest, ResumesNobodyWhileTheApplicationIsPausedButForgetsTheItem)
{
    FakeStateListener below("below");
    FakeStateListener top("top");
    Elm_Object_Item* item = Push(&below);
    Push(&top);
    mFrame->OnAppPause();
    Recorder::Take();

    mFrame->DeleteItem(item);

    EXPECT_EQ(Recorder::Take(), Lines({"elm_object_item_del(item1)"}));
    EXPECT_EQ(mFrame->mStateListenerMap.count(item), 0u);
}

TEST_F(NaviFrameItemDeletedTest, ResumesNobodyWhenTheTopScreenDoesNotListen)
{
    FakeStateListener below("below");
    Elm_Object_Item* item = Push(&below);
    Elm_Object_Item* top = Push();
    mFrame->mStateListenerMap[top] = nullptr;
    Recorder::Take();

    mFrame->OnNaviImteDeleted(item);

    EXPECT_EQ(Recorder::Take(), Lines({"elm_naviframe_top_item_get(naviframe1)"}));
    EXPECT_EQ(mFrame->mStateListenerMap.size(), 1u);
}

TEST_F(NaviFrameItemDeletedTest, ResumesNobodyOnAnEmptyStack)
{
    FakeStateListener listener;
    Elm_Object_Item* item = Push();
    mFrame->DeleteItem(item);
    mFrame->mStateListenerMap[nullptr] = &listener;
    Recorder::Take();

    mFrame->OnNaviImteDeleted(item);

    EXPECT_EQ(Recorder::Take(), Lines({"elm_naviframe_top_item_get(naviframe1)"}));
}

TEST_F(NaviFrameItemDeletedTest, ForgetsTheItemWhenNothingIsOnTop)
{
    FakeStateListener listener("listener");
    Elm_Object_Item* item = Push(&listener);
    Recorder::Take();
    Recorder::Fail("elm_naviframe_top_item_get");

    mFrame->OnNaviImteDeleted(item);

    EXPECT_EQ(Recorder::Take(), Lines({"elm_naviframe_top_item_get(naviframe1)"}));
    EXPECT_TRUE(mFrame->mStateListenerMap.empty());
}

TEST_F(NaviFrameItemDeletedTest, NoDeletedItemChangesNothing)
{
    FakeStateListener listener;
    Push(&listener);
    Recorder::Take();

    mFrame->OnNaviImteDeleted(nullptr);

    EXPECT_EQ(Recorder::Take(), Lines());
    EXPECT_EQ(mFrame->mStateListenerMap.size(), 1u);
}

TEST_F(NaviFrameItemDeletedTest, AFrameThatIsNoLongerAliveOnlyWarns)
{
    FakeStateListener listener;
    Elm_Object_Item* item = Push(&listener);
    Recorder::Take();
    NaviFrame::mIsAlive = false;

    mFrame->OnNaviImteDeleted(item);
    mFrame->OnNaviImteDeleted(nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"warn(OnNaviImteDeleted) mIsAlive is false",
                                       "warn(OnNaviImteDeleted) mIsAlive is false"}));
    EXPECT_EQ(mFrame->mStateListenerMap.size(), 1u);
}

TEST_F(NaviFrameItemDeletedTest, TheDeletedItemIsStillMappedWhenTheTopScreenResumes)
{
    FakeStateListener below("below");
    FakeStateListener top("top");
    Elm_Object_Item* item = Push(&below);
    Push(&top);
    std::size_t mapped = 0;
    top.mReactions["OnItemResume"] = [&] { mapped = mFrame->mStateListenerMap.count(item); };

    mFrame->DeleteItem(item);

    EXPECT_EQ(mapped, 1u);
    EXPECT_EQ(mFrame->mStateListenerMap.count(item), 0u);
}

TEST_F(NaviFrameItemDeletedTest, AScreenMayDeleteAnotherWhenItResumes)
{
    FakeStateListener top("top");
    Elm_Object_Item* item1 = Push();
    Elm_Object_Item* item2 = Push();
    Push(&top);
    Recorder::Take();
    top.mReactions["OnItemResume"] = [&] { mFrame->DeleteItem(item2); };

    mFrame->DeleteItem(item1);

    EXPECT_EQ(Recorder::TakeOnly({"top"}), Lines({"top.OnItemResume", "top.OnItemResume"}));
    EXPECT_EQ(Stack(), Lines({"item3"}));
}

TEST_F(NaviFrameItemDeletedTest, AScreenMayPushAnotherWhenItResumes)
{
    FakeStateListener top("top");
    FakeStateListener pushed("pushed");
    Elm_Object_Item* item = Push();
    Push(&top);
    Recorder::Take();
    top.mReactions["OnItemResume"] = [&] { Push(&pushed); };

    mFrame->DeleteItem(item);

    EXPECT_EQ(Recorder::TakeOnly({"top", "pushed"}),
              Lines({"top.OnItemResume", "top.OnItemPause", "pushed.OnItemResume"}));
    EXPECT_EQ(Stack(), Lines({"item2", "item3"}));
}

} // namespace
