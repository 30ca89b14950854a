#include "common/NaviFrameFixture.h"

using QivoUi::NaviFrame;
using QivoUi::NaviFrameItemData;
using QivoUi::NaviFrameItemPopHandler;

namespace
{

const std::string kFinished = "info(SNaviFrameTransitionFinishedCB) Animation Done";
const std::string kRegister = "evas_object_smart_callback_add(naviframe1, 'transition,finished', "
                              "NaviFrame::SNaviFrameTransitionFinishedCB, frame)";
const std::string kUnregister = "evas_object_smart_callback_del(naviframe1, 'transition,finished', "
                                "NaviFrame::SNaviFrameTransitionFinishedCB)";

class NaviFramePushTest : public NaviFrameFixture
{
protected:
    std::shared_ptr<NaviFrameItemPopHandler>
    PushRecord(const std::shared_ptr<NaviFrameItemData>& record, bool animated)
    {
        mHandles.push_back(mFrame->PushNaviframeItem(record, animated));
        return mHandles.back();
    }

    std::shared_ptr<NaviFrameItemPopHandler>
    PushAnimated(QivoUi::NaviFrameStateListener* listener = nullptr)
    {
        return PushRecord(MakeRecord(listener), true);
    }

    // The lines, and after them those of a handle that is bound to the item. The handle is made
    // within the push, before it can have a name.
    static Lines AndBinding(Lines lines, const std::string& item)
    {
        lines.push_back("elm_naviframe_item_pop_cb_set(" + item +
                        ", NaviFrameItemPopHandler::SNaviFramePopedCB, ?)");
        lines.push_back("elm_object_item_data_set(" + item + ", ?)");
        lines.push_back("elm_object_item_del_cb_set(" + item +
                        ", NaviFrameItemPopHandler::NaviFrameItemDelCB)");
        return lines;
    }
};

TEST_F(NaviFramePushTest, ARecordStartsWithoutLayoutTitleAndListener)
{
    NaviFrameItemData record;

    EXPECT_EQ(record.mViewLayout, nullptr);
    EXPECT_EQ(record.mReserved, nullptr);
    EXPECT_EQ(record.mTitle, "");
    EXPECT_EQ(record.mStateListener, nullptr);
}

TEST_F(NaviFramePushTest, ARecordKeepsItsFieldsInOrder)
{
    NaviFrameItemData record;
    const std::vector<const void*> fields = {&record.mViewLayout, &record.mReserved, &record.mTitle,
                                             &record.mStateListener};

    EXPECT_TRUE(std::is_sorted(fields.begin(), fields.end()));
}

TEST_F(NaviFramePushTest, PushesTheFirstScreenWithoutATransitionEvenWhenAnimated)
{
    auto handle = PushAnimated();

    EXPECT_EQ(Recorder::Take(),
              AndBinding({"elm_naviframe_top_item_get(naviframe1)",
                          "elm_naviframe_item_push(naviframe1, '', null, null, content1, 'empty')"},
                         "item1"));
    EXPECT_EQ(Recorder::NameOf(handle->mNaviFrameItem), "item1");
    EndTransition();
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(NaviFramePushTest, PushesTheFirstScreenTheSameWayWhenNotAnimated)
{
    auto handle = PushRecord(MakeRecord(), false);

    EXPECT_EQ(Recorder::Take(),
              AndBinding({"elm_naviframe_top_item_get(naviframe1)",
                          "elm_naviframe_item_push(naviframe1, '', null, null, content1, 'empty')"},
                         "item1"));
    EXPECT_EQ(Recorder::NameOf(handle->mNaviFrameItem), "item1");
}

TEST_F(NaviFramePushTest, PushesALaterScreenWithATransition)
{
    Push();
    Recorder::Take();

    auto handle = PushAnimated();

    EXPECT_EQ(Recorder::Take(),
              AndBinding({"elm_naviframe_top_item_get(naviframe1)",
                          "elm_naviframe_item_push(naviframe1, '', null, null, content2, 'empty')",
                          "info(PushNaviframeItem) push animationStart", kRegister},
                         "item2"));
    EXPECT_EQ(Recorder::NameOf(handle->mNaviFrameItem), "item2");
    EXPECT_EQ(Stack(), Lines({"item1", "item2"}));
}

TEST_F(NaviFramePushTest, InsertsALaterScreenAboveTheTopWhenNotAnimated)
{
    Push();
    Push();
    Recorder::Take();

    auto handle = PushRecord(MakeRecord(), false);

    EXPECT_EQ(Recorder::Take(),
              AndBinding({"elm_naviframe_top_item_get(naviframe1)",
                          "elm_naviframe_bottom_item_get(naviframe1)",
                          "elm_naviframe_item_insert_after(naviframe1, item2, '', null, null, "
                          "content3, 'empty')"},
                         "item3"));
    EXPECT_EQ(Recorder::NameOf(handle->mNaviFrameItem), "item3");
    EXPECT_EQ(Stack(), Lines({"item1", "item2", "item3"}));
}

TEST_F(NaviFramePushTest, AnInsertedScreenNeverEndsATransition)
{
    FakeStateListener listener;
    Push();
    Push(&listener);
    Recorder::Take();

    EndTransition();

    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(NaviFramePushTest, AScreenWithATitleIsPushedInTheEmptyStyleText)
{
    auto record = MakeRecord();
    record->mTitle = "Title";

    PushRecord(record, true);

    EXPECT_EQ(Recorder::TakeOnly({"elm_naviframe_item_push"}),
              Lines({"elm_naviframe_item_push(naviframe1, 'Title', null, null, content1, '')"}));
}

TEST_F(NaviFramePushTest, AScreenWithATitleIsInsertedInTheEmptyStyleText)
{
    Push();
    auto record = MakeRecord();
    record->mTitle = "Title";
    Recorder::Take();

    PushRecord(record, false);

    EXPECT_EQ(Recorder::TakeOnly({"elm_naviframe_item_insert_after"}),
              Lines({"elm_naviframe_item_insert_after(naviframe1, item1, 'Title', null, null, "
                     "content2, '')"}));
}

TEST_F(NaviFramePushTest, AScreenWithoutContentIsPushedAllTheSame)
{
    auto handle = PushRecord(std::make_shared<NaviFrameItemData>(), false);

    EXPECT_EQ(Recorder::TakeOnly({"elm_naviframe_item_push"}),
              Lines({"elm_naviframe_item_push(naviframe1, '', null, null, null, 'empty')"}));
    EXPECT_NE(handle, nullptr);
}

TEST_F(NaviFramePushTest, PushesNothingWithoutAWidget)
{
    FakeStateListener listener;
    NaviFrame::Destroy();
    Recorder::Take();

    auto handle = NaviFrame::GetInstance()->PushNaviframeItem(MakeRecord(&listener), true);

    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(Recorder::Take(),
              Lines({"error(PushNaviframeItem) [Failed] Invalid Naviframe item"}));
}

TEST_F(NaviFramePushTest, GivesNoHandleForAnItemThatTheToolkitDidNotPush)
{
    FakeStateListener listener;
    Recorder::Fail("elm_naviframe_item_push");

    EXPECT_EQ(PushAnimated(&listener), nullptr);

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_naviframe_top_item_get(naviframe1)",
                     "elm_naviframe_item_push(naviframe1, '', null, null, content1, 'empty')",
                     "error(PushNaviframeItem) naviFrameItem is NULL"}));
    EXPECT_TRUE(mFrame->mStateListenerMap.empty());
}

TEST_F(NaviFramePushTest, HasStartedTheTransitionBeforeItSeesThatThePushFailed)
{
    FakeStateListener below("below");
    FakeStateListener pushed("pushed");
    Push(&below);
    Recorder::Take();
    Recorder::Fail("elm_naviframe_item_push");

    EXPECT_EQ(PushAnimated(&pushed), nullptr);

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_naviframe_top_item_get(naviframe1)",
                     "elm_naviframe_item_push(naviframe1, '', null, null, content2, 'empty')",
                     "info(PushNaviframeItem) push animationStart", kRegister,
                     "error(PushNaviframeItem) naviFrameItem is NULL"}));
}

TEST_F(NaviFramePushTest, LeavesTheTopAloneWhenAnInsertionFails)
{
    FakeStateListener below("below");
    FakeStateListener pushed("pushed");
    Push(&below);
    Recorder::Take();
    Recorder::Fail("elm_naviframe_item_insert_after");

    EXPECT_EQ(PushRecord(MakeRecord(&pushed), false), nullptr);

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_naviframe_top_item_get(naviframe1)",
                     "elm_naviframe_bottom_item_get(naviframe1)",
                     "elm_naviframe_item_insert_after(naviframe1, item1, '', null, null, content2, "
                     "'empty')",
                     "error(PushNaviframeItem) naviFrameItem is NULL"}));
    EXPECT_EQ(mFrame->mStateListenerMap.size(), 1u);
}

TEST_F(NaviFramePushTest, PausesTheCoveredScreenThenResumesTheNewOneThenBindsItsHandle)
{
    FakeStateListener below("below");
    FakeStateListener pushed("pushed");
    Push(&below);
    Recorder::Take();

    PushAnimated(&pushed);

    EXPECT_EQ(Recorder::Take(),
              AndBinding({"elm_naviframe_top_item_get(naviframe1)",
                          "elm_naviframe_item_push(naviframe1, '', null, null, content2, 'empty')",
                          "info(PushNaviframeItem) push animationStart", kRegister,
                          "below.OnItemPause", "pushed.OnItemResume"},
                         "item2"));
}

TEST_F(NaviFramePushTest, PausesTheCoveredScreenOfAnInsertionToo)
{
    FakeStateListener below("below");
    FakeStateListener pushed("pushed");
    Push(&below);
    Recorder::Take();

    Push(&pushed);

    EXPECT_EQ(Recorder::TakeOnly({"below", "pushed"}),
              Lines({"below.OnItemPause", "pushed.OnItemResume"}));
}

TEST_F(NaviFramePushTest, PausesOnlyTheScreenThatWasOnTop)
{
    FakeStateListener bottom("bottom");
    FakeStateListener middle("middle");
    Push(&bottom);
    Push(&middle);
    Recorder::Take();

    Push();

    EXPECT_EQ(Recorder::TakeOnly({"bottom", "middle"}), Lines({"middle.OnItemPause"}));
}

TEST_F(NaviFramePushTest, DoesNotPauseTheCoveredScreenWhileTheApplicationIsPaused)
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

TEST_F(NaviFramePushTest, PushesPastACoveredScreenWhoseListenerIsGone)
{
    Elm_Object_Item* below = Push();
    mFrame->mStateListenerMap[below] = nullptr;

    Push();

    EXPECT_EQ(Stack(), Lines({"item1", "item2"}));
}

TEST_F(NaviFramePushTest, MapsOnlyItemsWhoseRecordNamesAListener)
{
    FakeStateListener listener;
    Push();
    Elm_Object_Item* item = Push(&listener);

    ASSERT_EQ(mFrame->mStateListenerMap.size(), 1u);
    EXPECT_EQ(mFrame->mStateListenerMap.begin()->first, item);
    EXPECT_EQ(mFrame->mStateListenerMap.begin()->second, &listener);
}

TEST_F(NaviFramePushTest, ResumesTheNewScreenBeforeItIsMapped)
{
    FakeStateListener listener;
    std::size_t mapped = 1;
    listener.mReactions["OnItemResume"] = [&] { mapped = mFrame->mStateListenerMap.size(); };

    Push(&listener);

    EXPECT_EQ(mapped, 0u);
    EXPECT_EQ(mFrame->mStateListenerMap.size(), 1u);
}

TEST_F(NaviFramePushTest, ALaterPushOfTheSameItemReplacesItsListener)
{
    FakeStateListener first("first");
    FakeStateListener second("second");
    Elm_Object_Item* item = Push(&first);
    Recorder::Answer("elm_naviframe_item_insert_after", reinterpret_cast<std::intptr_t>(item));

    Push(&second);

    ASSERT_EQ(mFrame->mStateListenerMap.size(), 1u);
    EXPECT_EQ(mFrame->mStateListenerMap[item], &second);
}

TEST_F(NaviFramePushTest, BindsTheHandleToTheItemAndLeavesThePopListenerToTheCaller)
{
    auto handle = PushHandle();

    EXPECT_EQ(elm_object_item_data_get(handle->mNaviFrameItem), handle.get());
    EXPECT_EQ(handle->mPopEventListener, nullptr);
    EXPECT_EQ(handle.use_count(), 2);
}

TEST_F(NaviFramePushTest, TellsTheTopScreenOnceWhenTheTransitionHasEnded)
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

TEST_F(NaviFramePushTest, TellsWhoeverIsOnTopWhenTheTransitionEnds)
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

TEST_F(NaviFramePushTest, EndsTheTransitionOfAScreenThatDoesNotListen)
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

TEST_F(NaviFramePushTest, TheEndOfATransitionWithoutAFrameIsLoggedAndStaysRegistered)
{
    NaviFrame::SNaviFrameTransitionFinishedCB(nullptr, mFrame->mNaviFrame, nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"error(SNaviFrameTransitionFinishedCB) pThis is NULL"}));
}

TEST_F(NaviFramePushTest, EachAnimatedPushRegistersOnce)
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

TEST_F(NaviFramePushTest, AScreenMayPushAnotherWhenItIsCovered)
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

TEST_F(NaviFramePushTest, AScreenThatPushesAnotherWhenItResumesIsNotYetPausedByIt)
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

TEST_F(NaviFramePushTest, AScreenMayDeleteTheOneBelowWhenItResumes)
{
    FakeStateListener pushed("pushed");
    auto below = PushHandle();
    pushed.mReactions["OnItemResume"] = [&] { below->DeleteItem(); };

    Push(&pushed);

    EXPECT_EQ(Stack(), Lines({"item2"}));
    EXPECT_EQ(below->mNaviFrameItem, nullptr);
}

TEST_F(NaviFramePushTest, AScreenMayPushAnotherWhenItsTransitionHasEnded)
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

TEST_F(NaviFramePushTest, AScreenMayDeleteItselfWhenItsTransitionHasEnded)
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
