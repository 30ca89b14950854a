#include "common/BaseView.h"

#include "common/BaseViewFixture.h"
#include "common/DirtyMemory.h"

using QivoUi::BaseView;
using QivoUi::NaviFrame;
using QivoUi::NaviFrameItemData;

/** A view that leaves every event to the default. */
class FakeDefaultView : public BaseView
{
public:
    std::shared_ptr<NaviFrameItemData> CreateViewImpl(Evas_Object* /*parent*/) override
    {
        return nullptr;
    }
};

namespace
{

const std::string kDeletion = std::to_string(EVAS_CALLBACK_DEL);

using BaseViewTest = BaseViewFixture;

TEST_F(BaseViewTest, StartsWithoutRecordListenerAndLayout)
{
    InDirtyMemory<FakeDefaultView> view;

    EXPECT_EQ(view->mNaviFramItemDataPtr, nullptr);
    EXPECT_EQ(view->mViewEventListener, nullptr);
    EXPECT_EQ(view->mLayout, nullptr);
}

TEST_F(BaseViewTest, DoesNothingByItselfWhenLanguageOrThemeChange)
{
    FakeDefaultView view;

    view.OnLanguageChanged();
    view.OnThemeChanged();

    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(BaseViewTest, IsBuiltUnderTheNaviframeAndItsLayoutWired)
{
    auto view = MakeView();

    view->CreateView();

    EXPECT_EQ(Recorder::Take(),
              Lines({"view.CreateViewImpl(naviframe1)",
                     "eext_object_event_callback_add(content1, " +
                         std::to_string(EEXT_CALLBACK_BACK) + ", BaseView::SLayoutBackCB, view)",
                     "evas_object_event_callback_add(content1, " + kDeletion +
                         ", BaseView::SViewObjectDeleteCB, view)",
                     "evas_object_smart_callback_add(content1, 'language,changed', "
                     "BaseView::SLanguageChangedCB, view)"}));
    EXPECT_EQ(view->mNaviFramItemDataPtr, mRecord);
    EXPECT_EQ(view->mLayout, Content());
}

TEST_F(BaseViewTest, IsNotBuiltWithoutAParent)
{
    NaviFrame::Destroy();
    Recorder::Take();
    auto view = MakeView();

    view->CreateView();

    EXPECT_EQ(Recorder::Take(), Lines({"error(CreateView) [Failed] Invalid parent"}));
    EXPECT_EQ(view->mNaviFramItemDataPtr, nullptr);
    EXPECT_EQ(view->Show(true), nullptr);
    EXPECT_EQ(Recorder::Take(), Lines({"error(Show) [Failed] Invalid NaviFrameItemDataPtr"}));
}

TEST_F(BaseViewTest, WiresNothingWithoutARecord)
{
    FakeView view(nullptr);

    view.CreateView();

    EXPECT_EQ(Recorder::Take(), Lines({"view.CreateViewImpl(naviframe1)"}));
    EXPECT_EQ(view.mNaviFramItemDataPtr, nullptr);
    EXPECT_EQ(view.mLayout, nullptr);
}

TEST_F(BaseViewTest, KeepsItsEarlierLayoutWhenBuiltAgainWithoutARecord)
{
    auto view = MakeCreatedView();
    view->mRecord = nullptr;

    view->CreateView();

    EXPECT_EQ(Recorder::Take(), Lines({"view.CreateViewImpl(naviframe1)"}));
    EXPECT_EQ(view->mNaviFramItemDataPtr, nullptr);
    EXPECT_EQ(view->mLayout, Content());
}

TEST_F(BaseViewTest, ReplacesItsRecordAndLayoutWhenBuiltAgain)
{
    auto view = MakeCreatedView();
    view->mRecord = MakeRecord();

    view->CreateView();

    EXPECT_EQ(view->mNaviFramItemDataPtr, view->mRecord);
    EXPECT_EQ(Recorder::NameOf(view->mLayout), "content2");
    evas_object_smart_callback_del(Content(), "language,changed", BaseView::SLanguageChangedCB);
    evas_object_event_callback_del(Content(), EVAS_CALLBACK_DEL, BaseView::SViewObjectDeleteCB);
}

TEST_F(BaseViewTest, IsPushedWithoutALayoutButGetsNoCallbacks)
{
    auto view = std::make_unique<FakeView>(std::make_shared<NaviFrameItemData>());

    view->CreateView();
    EXPECT_EQ(Recorder::Take(), Lines({"view.CreateViewImpl(naviframe1)"}));
    EXPECT_EQ(view->mLayout, nullptr);

    auto handle = view->Show(false);
    EXPECT_NE(handle, nullptr);
    EXPECT_EQ(Recorder::TakeOnly({"elm_naviframe_item_push"}),
              Lines({"elm_naviframe_item_push(naviframe1, '', null, null, null, 'empty')"}));
}

TEST_F(BaseViewTest, ForgetsItsEarlierLayoutWhenBuiltAgainWithoutOne)
{
    auto view = MakeCreatedView();
    view->mRecord = std::make_shared<NaviFrameItemData>();

    view->CreateView();

    EXPECT_EQ(view->mLayout, nullptr);
    evas_object_smart_callback_del(Content(), "language,changed", BaseView::SLanguageChangedCB);
    evas_object_event_callback_del(Content(), EVAS_CALLBACK_DEL, BaseView::SViewObjectDeleteCB);
}

TEST_F(BaseViewTest, IsPushedAndListensToPopsOfItsItem)
{
    auto view = MakeCreatedView();

    auto handle = view->Show(true);

    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(handle->mPopEventListener, view.get());
    EXPECT_EQ(Recorder::TakeOnly({"elm_naviframe_item_push"}),
              Lines({"elm_naviframe_item_push(naviframe1, '', null, null, content1, 'empty')"}));
}

TEST_F(BaseViewTest, IsPushedWithOrWithoutAnimation)
{
    Push();
    auto view = MakeCreatedView();
    auto other = std::make_unique<FakeView>(MakeRecord());
    other->CreateView();
    Recorder::Take();

    auto animated = view->Show(true);
    auto inserted = other->Show(false);

    EXPECT_EQ(Recorder::TakeOnly({"elm_naviframe_item_push", "elm_naviframe_item_insert_after"}),
              Lines({"elm_naviframe_item_push(naviframe1, '', null, null, content1, 'empty')",
                     "elm_naviframe_item_insert_after(naviframe1, item2, '', null, null, "
                     "content3, 'empty')"}));
}

TEST_F(BaseViewTest, GivesNoHandleWhenThePushFails)
{
    auto view = MakeCreatedView();
    Recorder::Fail("elm_naviframe_item_push");

    EXPECT_EQ(view->Show(true), nullptr);

    EXPECT_EQ(Recorder::TakeLog(), Lines({"error(PushNaviframeItem) naviFrameItem is NULL"}));
}

TEST_F(BaseViewTest, CannotBeShownBeforeItIsBuilt)
{
    auto view = MakeView();

    EXPECT_EQ(view->Show(true), nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"error(Show) [Failed] Invalid NaviFrameItemDataPtr"}));
}

TEST_F(BaseViewTest, GivesItsRecordsLayoutEvenWhenThatIsGone)
{
    auto view = MakeCreatedView();
    EXPECT_EQ(view->GetViewLayout(), Content());

    evas_object_del(Content());
    Recorder::Take();
    EXPECT_EQ(view->GetViewLayout(), mRecord->mViewLayout);
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(BaseViewTest, WarnsThatItHasNoLayoutBeforeItIsBuilt)
{
    auto view = MakeView();

    EXPECT_EQ(view->GetViewLayout(), nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"warn(GetViewLayout) mNaviFramItemDataPtr is NULL"}));
}

} // namespace
