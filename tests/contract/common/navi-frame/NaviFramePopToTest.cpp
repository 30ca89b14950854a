#include "common/navi-frame/NaviFrameFixture.h"

using QivoUi::NaviFrame;

namespace
{

using NaviFramePopToTest = NaviFrameFixture;

TEST_F(NaviFramePopToTest, PopsEverythingAboveAScreen)
{
    Elm_Object_Item* bottom = Push();
    Push();
    Push();
    Recorder::Take();

    mFrame->PopToItem(bottom);

    EXPECT_EQ(
        Recorder::TakeOnly({"elm_naviframe_item_pop_to", "evas", "info"}),
        Lines({"elm_naviframe_item_pop_to(item1)", "info(PopToItem) pop to animation start"}));
    EXPECT_EQ(Stack(), Lines({"item1"}));
}

TEST_F(NaviFramePopToTest, AsksForTheTopThenPopsToTheItem)
{
    Elm_Object_Item* bottom = Push();
    Push();
    Recorder::Take();
    Recorder::Fail("elm_naviframe_item_pop_to");

    mFrame->PopToItem(bottom);

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_naviframe_top_item_get(naviframe1)", "elm_naviframe_item_pop_to(item1)",
                     "info(PopToItem) pop to animation start"}));
}

TEST_F(NaviFramePopToTest, PoppingToTheTopScreenDoesNothing)
{
    Push();
    Elm_Object_Item* top = Push();
    Recorder::Take();

    mFrame->PopToItem(top);

    EXPECT_EQ(Recorder::Take(), Lines({"elm_naviframe_top_item_get(naviframe1)"}));
    EXPECT_EQ(Stack(), Lines({"item1", "item2"}));
}

TEST_F(NaviFramePopToTest, CannotPopToNoItem)
{
    Push();
    Recorder::Take();

    mFrame->PopToItem(nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"error(PopToItem) [Failed] Invalid Naviframe : " +
                                       Address(mFrame->mNaviFrame) + " naviframeItem : (nil)"}));
}

TEST_F(NaviFramePopToTest, CannotPopToAnItemWithoutAWidget)
{
    Elm_Object_Item* item = Push();
    NaviFrame::Destroy();
    Recorder::Take();

    NaviFrame::GetInstance()->PopToItem(item);

    EXPECT_EQ(Recorder::Take(), Lines({"error(PopToItem) [Failed] Invalid Naviframe : (nil) "
                                       "naviframeItem : " +
                                       Address(item)}));
}

TEST_F(NaviFramePopToTest, PopsTheTopScreenWhateverItIs)
{
    Push();
    Push();
    Recorder::Take();

    mFrame->PopTopItem();

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_naviframe_item_pop(naviframe1)", "info(PopTopItem) Pop Start"}));
    EXPECT_EQ(Stack(), Lines({"item1"}));
}

TEST_F(NaviFramePopToTest, PopsEvenTheOnlyScreenWhenAskedForTheTop)
{
    Push();

    mFrame->PopTopItem();

    EXPECT_TRUE(mFrame->IsNaviFrameEmpty());
}

TEST_F(NaviFramePopToTest, CannotPopTheTopWithoutAWidget)
{
    NaviFrame::Destroy();
    Recorder::Take();

    NaviFrame::GetInstance()->PopTopItem();

    EXPECT_EQ(Recorder::Take(), Lines({"error(PopTopItem) [Failed] Pop Naviframe item"}));
}

} // namespace
