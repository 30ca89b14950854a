#include "common/DirtyMemory.h"
#include "common/navi-frame/NaviFrameFixture.h"

using QivoUi::NaviFrame;
using QivoUi::NaviFrameItemData;
using QivoUi::NaviFrameItemPopHandler;

namespace
{

const std::string kRegister = "evas_object_smart_callback_add(naviframe1, 'transition,finished', "
                              "NaviFrame::SNaviFrameTransitionFinishedCB, frame)";

class NaviFramePushTest : public NaviFrameFixture
{
protected:
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
    InDirtyMemory<NaviFrameItemData> record;

    EXPECT_EQ(record->mViewLayout, nullptr);
    EXPECT_EQ(record->mReserved, nullptr);
    EXPECT_EQ(record->mTitle, "");
    EXPECT_EQ(record->mStateListener, nullptr);
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

TEST_F(NaviFramePushTest, LooksAtNoRecordWithoutAWidget)
{
    NaviFrame::Destroy();
    Recorder::Take();

    auto handle = NaviFrame::GetInstance()->PushNaviframeItem(nullptr, true);

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

TEST_F(NaviFramePushTest, BindsTheHandleToTheItemAndLeavesThePopListenerToTheCaller)
{
    auto handle = PushHandle();

    EXPECT_EQ(elm_object_item_data_get(handle->mNaviFrameItem), handle.get());
    EXPECT_EQ(handle->mPopEventListener, nullptr);
    EXPECT_EQ(handle.use_count(), 2);
}

} // namespace
