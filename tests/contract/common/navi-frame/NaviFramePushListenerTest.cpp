#include "common/navi-frame/NaviFrameFixture.h"

using QivoUi::NaviFrame;

namespace
{

const std::string kFinished = "info(SNaviFrameTransitionFinishedCB) Animation Done";
const std::string kRegister = "evas_object_smart_callback_add(naviframe1, 'transition,finished', "
                              "NaviFrame::SNaviFrameTransitionFinishedCB, frame)";
const std::string kUnregister = "evas_object_smart_callback_del(naviframe1, 'transition,finished', "
                                "NaviFrame::SNaviFrameTransitionFinishedCB)";

using NaviFramePushListenerTest = NaviFrameFixture;

TEST_F(NaviFramePushListenerTest, PausesTheCoveredScreenOfAnInsertionToo)
{
    FakeStateListener below("below");
    FakeStateListener pushed("pushed");
    Push(&below);
    Recorder::Take();

    Push(&pushed);

    EXPECT_EQ(Recorder::TakeOnly({"below", "pushed"}),
              Lines({"below.OnItemPause", "pushed.OnItemResume"}));
}

TEST_F(NaviFramePushListenerTest, PausesOnlyTheScreenThatWasOnTop)
{
    FakeStateListener bottom("bottom");
    FakeStateListener middle("middle");
    Push(&bottom);
    Push(&middle);
    Recorder::Take();

    Push();

    EXPECT_EQ(Recorder::TakeOnly({"bottom", "middle"}), Lines({"middle.OnItemPause"}));
}

TEST_F(NaviFramePushListenerTest, DoesNotPauseTheCoveredScreenWhileTheApplicationIsPaused)
{
    FakeStateListener below("below");
    FakeStateListener pushed("pushed");
    Push(&below);
    mFrame->OnAppPause();
    Recorder::Take();

    Elm_Object_Item* item = Push(&pushed);

    EXPECT_EQ(Recorder::TakeOnly({"below", "pushed"}), Lines({"pushed.OnItemResume"}));
    EXPECT_EQ(mFrame->mStateListenerMap[item], &pushed);
}

TEST_F(NaviFramePushListenerTest, PushesPastACoveredScreenWhoseListenerIsGone)
{
    Elm_Object_Item* below = Push();
    mFrame->mStateListenerMap[below] = nullptr;

    Push();

    EXPECT_EQ(Stack(), Lines({"item1", "item2"}));
}

TEST_F(NaviFramePushListenerTest, MapsOnlyItemsWhoseRecordNamesAListener)
{
    FakeStateListener listener;
    Push();
    Elm_Object_Item* item = Push(&listener);

    ASSERT_EQ(mFrame->mStateListenerMap.size(), 1u);
    EXPECT_EQ(mFrame->mStateListenerMap.begin()->first, item);
    EXPECT_EQ(mFrame->mStateListenerMap.begin()->second, &listener);
}

TEST_F(NaviFramePushListenerTest, ResumesTheNewScreenBeforeItIsMapped)
{
    FakeStateListener listener;
    std::size_t mapped = 1;
    listener.mReactions["OnItemResume"] = [&] { mapped = mFrame->mStateListenerMap.size(); };

    Push(&listener);

    EXPECT_EQ(mapped, 0u);
    EXPECT_EQ(mFrame->mStateListenerMap.size(), 1u);
}

TEST_F(NaviFramePushListenerTest, ALaterPushOfTheSameItemReplacesItsListener)
{
    FakeStateListener first("first");
    FakeStateListener second("second");
    Elm_Object_Item* item = Push(&first);
    Recorder::Answer("elm_naviframe_item_insert_after", reinterpret_cast<std::intptr_t>(item));

    Push(&second);

    ASSERT_EQ(mFrame->mStateListenerMap.size(), 1u);
    EXPECT_EQ(mFrame->mStateListenerMap[item], &second);
    // The toolkit tells the later handle alone that the item dies.
    mHandles.front()->mNaviFrameItem = nullptr;
}

TEST_F(NaviFramePushListenerTest, TellsTheTopScreenOnceWhenTheTransitionHasEnded)
{
    FakeStateListener below("below");
    FakeStateListener pushed("pushed");
    Push(&below);
    PushAnimated(&pushed);
    Recorder::Take();

    EXPECT_EQ(TakeUntil(kFinished), Lines({kFinished, "elm_naviframe_top_item_get(naviframe1)",
                                           "pushed.OnItemTransitionFinished", kUnregister}));
    EndTransition();
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(NaviFramePushListenerTest, TellsWhoeverIsOnTopWhenTheTransitionEnds)
{
    FakeStateListener pushed("pushed");
    FakeStateListener top("top");
    Push();
    PushAnimated(&pushed);
    Push(&top);
    Recorder::Take();

    EndTransition();

    EXPECT_EQ(Recorder::TakeOnly({"pushed", "top"}), Lines({"top.OnItemTransitionFinished"}));
}

TEST_F(NaviFramePushListenerTest, EndsTheTransitionOfAScreenThatDoesNotListen)
{
    Push();
    auto handle = PushAnimated();
    Recorder::Take();

    EXPECT_EQ(TakeUntil(kFinished),
              Lines({kFinished, "elm_naviframe_top_item_get(naviframe1)", kUnregister}));

    mFrame->mStateListenerMap[handle->mNaviFrameItem] = nullptr;
    NaviFrame::SNaviFrameTransitionFinishedCB(mFrame, nullptr, nullptr);
    EXPECT_EQ(Recorder::Take(),
              Lines({kFinished, "elm_naviframe_top_item_get(naviframe1)", kUnregister}));
}

TEST_F(NaviFramePushListenerTest, TheEndOfATransitionWithoutAFrameIsLoggedAndStaysRegistered)
{
    NaviFrame::SNaviFrameTransitionFinishedCB(nullptr, mFrame->mNaviFrame, nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"error(SNaviFrameTransitionFinishedCB) pThis is NULL"}));
}

TEST_F(NaviFramePushListenerTest, EachAnimatedPushRegistersOnce)
{
    Push();
    PushAnimated();
    PushAnimated();
    EXPECT_EQ(Recorder::TakeOnly({kRegister}), Lines({kRegister, kRegister}));

    EndTransition();
    EndTransition();
    EndTransition();

    EXPECT_EQ(Recorder::TakeOnly({kFinished}), Lines({kFinished, kFinished}));
}

TEST_F(NaviFramePushListenerTest, AScreenMayPushAnotherWhenItIsCovered)
{
    FakeStateListener below("below");
    FakeStateListener pushed("pushed");
    FakeStateListener nested("nested");
    Push(&below);
    Recorder::Take();
    below.mReactions["OnItemPause"] = [&] { Push(&nested); };

    auto handle = PushHandle(&pushed);

    EXPECT_EQ(Recorder::TakeOnly({"below", "nested", "pushed"}),
              Lines({"below.OnItemPause", "nested.OnItemResume", "pushed.OnItemResume"}));
    EXPECT_EQ(Stack(), Lines({"item1", "item2", "item3"}));
    EXPECT_EQ(mFrame->mStateListenerMap.size(), 3u);
}

TEST_F(NaviFramePushListenerTest, AScreenThatPushesAnotherWhenItResumesIsNotYetPausedByIt)
{
    FakeStateListener pushed("pushed");
    FakeStateListener nested("nested");
    pushed.mReactions["OnItemResume"] = [&] { Push(&nested); };

    Push(&pushed);

    EXPECT_EQ(Recorder::TakeOnly({"pushed", "nested"}),
              Lines({"pushed.OnItemResume", "nested.OnItemResume"}));
    EXPECT_EQ(Stack(), Lines({"item1", "item2"}));
    EXPECT_EQ(mFrame->mStateListenerMap.size(), 2u);
}

TEST_F(NaviFramePushListenerTest, AScreenMayDeleteTheOneBelowWhenItResumes)
{
    FakeStateListener pushed("pushed");
    auto below = PushHandle();
    pushed.mReactions["OnItemResume"] = [&] { below->DeleteItem(); };

    Push(&pushed);

    EXPECT_EQ(Stack(), Lines({"item2"}));
    EXPECT_EQ(below->mNaviFrameItem, nullptr);
}

TEST_F(NaviFramePushListenerTest, AScreenMayPushAnotherWhenItsTransitionHasEnded)
{
    FakeStateListener pushed("pushed");
    FakeStateListener nested("nested");
    Push();
    PushAnimated(&pushed);
    Recorder::Take();
    pushed.mReactions["OnItemTransitionFinished"] = [&] { PushAnimated(&nested); };

    EndTransition();
    EndTransition();
    EndTransition();

    EXPECT_EQ(Recorder::TakeOnly({"pushed", "nested"}),
              Lines({"pushed.OnItemTransitionFinished", "pushed.OnItemPause", "nested.OnItemResume",
                     "nested.OnItemTransitionFinished"}));
}

TEST_F(NaviFramePushListenerTest, AScreenMayDeleteItselfWhenItsTransitionHasEnded)
{
    FakeStateListener below("below");
    FakeStateListener pushed("pushed");
    Push(&below);
    auto handle = PushAnimated(&pushed);
    pushed.mReactions["OnItemTransitionFinished"] = [&] { handle->DeleteItem(); };

    TakeUntil(kFinished);

    EXPECT_EQ(Stack(), Lines({"item1"}));
    EXPECT_EQ(mFrame->mStateListenerMap.size(), 1u);
}

} // namespace
