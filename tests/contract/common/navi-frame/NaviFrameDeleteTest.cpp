#include "common/navi-frame/NaviFrameFixture.h"

using QivoUi::NaviFrame;

namespace
{

class NaviFrameDeleteTest : public NaviFrameFixture
{
protected:
    // A list of items whose nodes are "node1", "node2" and so on.
    static Eina_List* MakeList(const std::vector<Elm_Object_Item*>& items)
    {
        Eina_List* list = nullptr;
        for (Elm_Object_Item* item : items)
        {
            list = eina_list_append(list, item);
            Recorder::Name(eina_list_last(list), "node" + std::to_string(eina_list_count(list)));
        }
        return list;
    }

    // The toolkit's next list of items, as MakeList() makes it.
    static Eina_List* AnswerItems(const std::vector<Elm_Object_Item*>& items)
    {
        Eina_List* list = MakeList(items);
        Recorder::Answer("elm_naviframe_items_get", reinterpret_cast<std::intptr_t>(list));
        return list;
    }

    static std::string Deleting(const std::string& function, Elm_Object_Item* item)
    {
        return "error(" + function + ") Delete naviframeItem " + Address(item);
    }
};

TEST_F(NaviFrameDeleteTest, DeletesAScreen)
{
    Elm_Object_Item* bottom = Push();
    Push();
    Recorder::Take();

    mFrame->DeleteItem(bottom);

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_object_item_del(item1)", "elm_naviframe_top_item_get(naviframe1)"}));
    EXPECT_EQ(Stack(), Lines({"item2"}));
}

TEST_F(NaviFrameDeleteTest, DeletingNoScreenDoesNothing)
{
    mFrame->DeleteItem(nullptr);

    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(NaviFrameDeleteTest, DeletesAScreenWithoutAWidgetOfItsOwn)
{
    Elm_Object_Item* item = Push();
    Evas_Object* widget = mFrame->mNaviFrame;
    NaviFrame::Destroy();
    Recorder::Take();

    NaviFrame::GetInstance()->DeleteItem(item);

    EXPECT_EQ(Recorder::TakeOnly({"elm_object_item_del("}), Lines({"elm_object_item_del(item1)"}));
    EXPECT_EQ(elm_naviframe_top_item_get(widget), nullptr);
}

TEST_F(NaviFrameDeleteTest, DeletesTheTopScreen)
{
    Push();
    Push();
    Recorder::Take();

    mFrame->DeleteTopItem();

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_naviframe_top_item_get(naviframe1)", "elm_object_item_del(item2)",
                     "elm_naviframe_top_item_get(naviframe1)"}));
    EXPECT_EQ(Stack(), Lines({"item1"}));
}

TEST_F(NaviFrameDeleteTest, DeletesNoTopOfAnEmptyStack)
{
    mFrame->DeleteTopItem();

    EXPECT_EQ(Recorder::Take(), Lines({"elm_naviframe_top_item_get(naviframe1)"}));
}

TEST_F(NaviFrameDeleteTest, AsksForTheTopEvenWithoutAWidget)
{
    NaviFrame::Destroy();
    Recorder::Take();

    NaviFrame::GetInstance()->DeleteTopItem();

    EXPECT_EQ(Recorder::Take(), Lines({"elm_naviframe_top_item_get(null)"}));
}

TEST_F(NaviFrameDeleteTest, DeletesTheScreensAboveFromTheBottomUp)
{
    Elm_Object_Item* item1 = Push();
    Elm_Object_Item* item2 = Push();
    Elm_Object_Item* item3 = Push();
    Elm_Object_Item* item4 = Push();
    AnswerItems({item1, item2, nullptr, item3, item4});
    Recorder::Take();

    mFrame->DeleteAboveItems(item2);

    EXPECT_EQ(
        Recorder::Take(),
        Lines({"elm_naviframe_items_get(naviframe1)", "eina_list_data_find_list(node1, item2)",
               "eina_list_split_list(node1, node2, ?)", Deleting("DeleteAboveItems", item3),
               "elm_object_item_del(item3)", "elm_naviframe_top_item_get(naviframe1)",
               Deleting("DeleteAboveItems", item4), "elm_object_item_del(item4)",
               "elm_naviframe_top_item_get(naviframe1)", "eina_list_free(node3)",
               "eina_list_free(node1)"}));
    EXPECT_EQ(Stack(), Lines({"item1", "item2"}));
}

TEST_F(NaviFrameDeleteTest, DeletesNothingAboveTheTopScreen)
{
    Elm_Object_Item* item1 = Push();
    Elm_Object_Item* item2 = Push();
    AnswerItems({item1, item2});
    Recorder::Take();

    mFrame->DeleteAboveItems(item2);

    EXPECT_EQ(Recorder::Take(), Lines({"elm_naviframe_items_get(naviframe1)",
                                       "eina_list_data_find_list(node1, item2)",
                                       "eina_list_split_list(node1, node2, ?)",
                                       "eina_list_free(null)", "eina_list_free(node1)"}));
    EXPECT_EQ(Stack(), Lines({"item1", "item2"}));
}

TEST_F(NaviFrameDeleteTest, DeletesNothingAboveWhenTheListCannotBeSplit)
{
    Elm_Object_Item* item1 = Push();
    Eina_List* list = AnswerItems({item1, Push()});
    Recorder::Fail("eina_list_split_list");
    Recorder::Take();

    mFrame->DeleteAboveItems(item1);

    EXPECT_EQ(Recorder::Take(), Lines({"elm_naviframe_items_get(naviframe1)",
                                       "eina_list_data_find_list(node1, item1)",
                                       "eina_list_split_list(node1, node1, ?)",
                                       "eina_list_free(null)", "eina_list_free(null)"}));
    EXPECT_EQ(Stack(), Lines({"item1", "item2"}));
    eina_list_free(list);
}

TEST_F(NaviFrameDeleteTest, DeletesNothingAboveAScreenThatIsNotOnTheStack)
{
    Elm_Object_Item* item1 = Push();
    Elm_Object_Item* item2 = Push();
    AnswerItems({item1});
    Recorder::Take();

    mFrame->DeleteAboveItems(item2);

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_naviframe_items_get(naviframe1)",
                     "eina_list_data_find_list(node1, item2)", "eina_list_free(node1)"}));
    EXPECT_EQ(Stack(), Lines({"item1", "item2"}));
}

TEST_F(NaviFrameDeleteTest, DeletesNothingAboveOnAnEmptyStack)
{
    mFrame->DeleteAboveItems(nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"elm_naviframe_items_get(naviframe1)",
                                       "error(DeleteAboveItems) navifrmaeItem List is Null"}));
}

TEST_F(NaviFrameDeleteTest, DeletesNothingAboveWithoutAWidget)
{
    Elm_Object_Item* item = Push();
    NaviFrame::Destroy();
    Recorder::Take();

    NaviFrame::GetInstance()->DeleteAboveItems(item);

    EXPECT_EQ(Recorder::Take(), Lines({"error(DeleteAboveItems) [Faild] Invalid naviFrameItem"}));
}

TEST_F(NaviFrameDeleteTest, DeletesTheScreensBetweenTwoFromTheBottomUp)
{
    Elm_Object_Item* item1 = Push();
    Elm_Object_Item* item2 = Push();
    Elm_Object_Item* item3 = Push();
    Elm_Object_Item* item4 = Push();
    Elm_Object_Item* item5 = Push();
    AnswerItems({item1, item2, nullptr, item3, item4, item5});
    Recorder::Take();

    mFrame->DeleteBetweenItems(item4, item1);

    EXPECT_EQ(
        Recorder::Take(),
        Lines({"elm_naviframe_items_get(naviframe1)", "eina_list_data_find_list(node1, item4)",
               "eina_list_data_find_list(node1, item1)", "eina_list_split_list(node1, node1, ?)",
               "eina_list_free(node1)", "eina_list_split_list(node2, node4, ?)",
               "eina_list_free(node5)", Deleting("DeleteBetweenItems", item2),
               "elm_object_item_del(item2)", "elm_naviframe_top_item_get(naviframe1)",
               Deleting("DeleteBetweenItems", item3), "elm_object_item_del(item3)",
               "elm_naviframe_top_item_get(naviframe1)", "eina_list_free(node2)"}));
    EXPECT_EQ(Stack(), Lines({"item1", "item4", "item5"}));
}

TEST_F(NaviFrameDeleteTest, LeavesTheScreensBelowTheLowerOne)
{
    Elm_Object_Item* item1 = Push();
    Elm_Object_Item* item2 = Push();
    Elm_Object_Item* item3 = Push();
    Elm_Object_Item* item4 = Push();
    AnswerItems({item1, item2, item3, item4});
    Recorder::Take();

    mFrame->DeleteBetweenItems(item4, item2);

    EXPECT_EQ(
        Recorder::TakeOnly({"eina_list", "elm_object_item_del"}),
        Lines({"eina_list_data_find_list(node1, item4)", "eina_list_data_find_list(node1, item2)",
               "eina_list_split_list(node1, node2, ?)", "eina_list_free(node1)",
               "eina_list_split_list(node3, node3, ?)", "eina_list_free(node4)",
               "elm_object_item_del(item3)", "eina_list_free(node3)"}));
    EXPECT_EQ(Stack(), Lines({"item1", "item2", "item4"}));
}

TEST_F(NaviFrameDeleteTest, CutsThePartBetweenTwoNodesOutAndFreesTheRest)
{
    Elm_Object_Item* item1 = Push();
    Elm_Object_Item* item2 = Push();
    Elm_Object_Item* item3 = Push();
    Elm_Object_Item* item4 = Push();
    Eina_List* list = MakeList({item1, item2, item3, item4});
    Recorder::Take();

    Eina_List* between =
        mFrame->GetBetweenList(list, eina_list_last(list), eina_list_nth_list(list, 0));

    EXPECT_EQ(Recorder::Take(),
              Lines({"eina_list_split_list(node1, node1, ?)", "eina_list_free(node1)",
                     "eina_list_split_list(node2, node3, ?)", "eina_list_free(node4)"}));
    ASSERT_EQ(eina_list_count(between), 2u);
    EXPECT_EQ(eina_list_nth(between, 0), item2);
    EXPECT_EQ(eina_list_nth(between, 1), item3);
    EXPECT_EQ(Stack(), Lines({"item1", "item2", "item3", "item4"}));
    eina_list_free(between);
}

TEST_F(NaviFrameDeleteTest, NothingLiesBetweenNeighbours)
{
    Elm_Object_Item* item1 = Push();
    Elm_Object_Item* item2 = Push();
    AnswerItems({item1, item2});
    Recorder::Take();

    mFrame->DeleteBetweenItems(item2, item1);

    EXPECT_EQ(
        Recorder::Take(),
        Lines({"elm_naviframe_items_get(naviframe1)", "eina_list_data_find_list(node1, item2)",
               "eina_list_data_find_list(node1, item1)", "eina_list_split_list(node1, node1, ?)",
               "eina_list_free(node1)", "eina_list_split_list(node2, null, ?)",
               "eina_list_free(node2)", "error(DeleteBetweenItems) Invalid deletedList"}));
    EXPECT_EQ(Stack(), Lines({"item1", "item2"}));
}

TEST_F(NaviFrameDeleteTest, NothingLiesAboveTheTop)
{
    Elm_Object_Item* item1 = Push();
    AnswerItems({item1});
    Recorder::Take();

    mFrame->DeleteBetweenItems(item1, item1);

    EXPECT_EQ(
        Recorder::Take(),
        Lines({"elm_naviframe_items_get(naviframe1)", "eina_list_data_find_list(node1, item1)",
               "eina_list_data_find_list(node1, item1)", "eina_list_split_list(node1, node1, ?)",
               "eina_list_free(node1)", "error(DeleteBetweenItems) Invalid deletedList"}));
}

TEST_F(NaviFrameDeleteTest, DeletesNothingBetweenWhenTheListCannotBeSplit)
{
    Elm_Object_Item* item1 = Push();
    Elm_Object_Item* item2 = Push();
    Elm_Object_Item* item3 = Push();
    Eina_List* list = AnswerItems({item1, item2, item3});
    Recorder::Fail("eina_list_split_list");
    Recorder::Take();

    mFrame->DeleteBetweenItems(item3, item1);

    EXPECT_EQ(Recorder::TakeOnly({"eina_list_free", "elm_object", "error"}),
              Lines({"eina_list_free(null)", "error(DeleteBetweenItems) Invalid deletedList"}));
    eina_list_free(list);

    list = AnswerItems({item1, item2, item3});
    Eina_List* unsplit = eina_list_next(list);
    Recorder::Fail("eina_list_split_list", 2);
    Recorder::Take();

    mFrame->DeleteBetweenItems(item3, item1);

    EXPECT_EQ(Recorder::TakeOnly({"eina_list_free", "elm_object", "error"}),
              Lines({"eina_list_free(node1)", "eina_list_free(null)",
                     "error(DeleteBetweenItems) Invalid deletedList"}));
    eina_list_free(unsplit);
    EXPECT_EQ(Stack(), Lines({"item1", "item2", "item3"}));
}

TEST_F(NaviFrameDeleteTest, DeletesNothingBetweenWhenOneIsNotOnTheStack)
{
    Elm_Object_Item* item1 = Push();
    Elm_Object_Item* item2 = Push();
    Elm_Object_Item* item3 = Push();
    AnswerItems({item1, item2});
    Recorder::Take();

    mFrame->DeleteBetweenItems(item3, item1);

    EXPECT_EQ(
        Recorder::Take(),
        Lines({"elm_naviframe_items_get(naviframe1)", "eina_list_data_find_list(node1, item3)",
               "eina_list_data_find_list(node1, item1)",
               "error(DeleteBetweenItems) Invalid Delete Range", "eina_list_free(node1)"}));

    AnswerItems({item2, item3});
    mFrame->DeleteBetweenItems(item3, item1);

    EXPECT_EQ(Recorder::TakeOnly({"error", "eina_list_free", "eina_list_split"}),
              Lines({"error(DeleteBetweenItems) Invalid Delete Range", "eina_list_free(node1)"}));
    EXPECT_EQ(Stack(), Lines({"item1", "item2", "item3"}));
}

TEST_F(NaviFrameDeleteTest, DeletesNothingBetweenOnAnEmptyStack)
{
    mFrame->DeleteBetweenItems(nullptr, nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"elm_naviframe_items_get(naviframe1)",
                                       "error(DeleteBetweenItems) navifrmaeItem List is Null"}));
}

TEST_F(NaviFrameDeleteTest, DeletesNothingBetweenWithoutAWidget)
{
    Elm_Object_Item* item = Push();
    NaviFrame::Destroy();
    Recorder::Take();

    NaviFrame::GetInstance()->DeleteBetweenItems(item, item);

    EXPECT_EQ(Recorder::Take(), Lines({"error(DeleteBetweenItems) [Faild] Invalid naviFrameItem"}));
}

} // namespace
