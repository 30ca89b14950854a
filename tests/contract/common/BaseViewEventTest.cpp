#include "common/BaseViewFixture.h"

using QivoUi::BaseView;

/** A view whose own hook hears of the layout's deletion. */
class FakeDeletionView : public FakeView
{
public:
    using FakeView::FakeView;
    void OnLayoutDeleted() override { Recorder::Add("view.OnLayoutDeleted"); }
};

/** A record that tells when it goes. */
class FakeRecord : public QivoUi::NaviFrameItemData
{
public:
    ~FakeRecord() override { Recorder::Add("record gone"); }
};

namespace
{

const std::string kRemoveLanguage =
    "evas_object_smart_callback_del(content1, 'language,changed', BaseView::SLanguageChangedCB)";
const std::string kDeletion = std::to_string(EVAS_CALLBACK_DEL);

using BaseViewEventTest = BaseViewFixture;

TEST_F(BaseViewEventTest, TellsTheControllerOfTheBackKey)
{
    auto view = MakeCreatedView();
    view->mViewEventListener = &mController;

    Platform::PressBack(Content());

    EXPECT_EQ(Recorder::Take(), Lines({"mark(SLayoutBackCB)", "controller.OnViewBackEvent"}));
}

TEST_F(BaseViewEventTest, OnlyWarnsOfTheBackKeyWithoutAController)
{
    auto view = MakeCreatedView();

    Platform::PressBack(Content());

    EXPECT_EQ(Recorder::Take(),
              Lines({"mark(SLayoutBackCB)", "warn(SLayoutBackCB) mViewEventListener is NULL"}));
}

TEST_F(BaseViewEventTest, LetsTheControllerDecideOnAPop)
{
    auto view = MakeCreatedView();
    view->mViewEventListener = &mController;

    EXPECT_TRUE(view->OnViewPoped());
    mController.mIsAllowed = false;
    EXPECT_FALSE(view->OnViewPoped());

    EXPECT_EQ(Recorder::Take(), Lines({"controller.OnViewPopEvent", "controller.OnViewPopEvent"}));
}

TEST_F(BaseViewEventTest, AllowsAPopWithoutAController)
{
    auto view = MakeCreatedView();

    EXPECT_TRUE(view->OnViewPoped());

    EXPECT_EQ(Recorder::Take(), Lines({"warn(OnViewPoped) mViewEventListener is NULL"}));
}

TEST_F(BaseViewEventTest, ItsItemStaysWhileTheControllerRefusesThePop)
{
    Push();
    auto view = MakeCreatedView();
    view->mViewEventListener = &mController;
    auto handle = view->Show(false);
    mController.mIsAllowed = false;

    handle->Pop(true, nullptr);
    EXPECT_EQ(Stack(), Lines({"item1", "item2"}));

    mController.mIsAllowed = true;
    handle->Pop(true, nullptr);
    EXPECT_EQ(Stack(), Lines({"item1"}));
    // The popped item still calls its handle when the transition ends.
    TakeUntil("controller.OnViewDeleteEvent");
}

TEST_F(BaseViewEventTest, TellsTheControllerOfTheLayoutsDeletionAndLeavesTheLanguageCallback)
{
    auto view = MakeCreatedView();
    view->mViewEventListener = &mController;

    evas_object_del(Content());

    EXPECT_EQ(Recorder::Take(), Lines({"controller.OnViewDeleteEvent"}));
    EXPECT_EQ(view->mLayout, nullptr);
}

TEST_F(BaseViewEventTest, StillHasItsLayoutWhenTheControllerHearsOfTheDeletion)
{
    auto view = MakeCreatedView();
    view->mViewEventListener = &mController;
    bool hadLayout = false;
    mController.mReactions["OnViewDeleteEvent"] = [&] { hadLayout = view->mLayout == Content(); };

    evas_object_del(Content());

    EXPECT_TRUE(hadLayout);
}

TEST_F(BaseViewEventTest, RemovesTheLanguageCallbackOfADeletedLayoutWithoutAController)
{
    auto view = MakeCreatedView();

    evas_object_del(Content());

    EXPECT_EQ(Recorder::Take(),
              Lines({"warn(OnLayoutDeleted) mViewEventListener is NULL", kRemoveLanguage}));
    EXPECT_EQ(view->mLayout, nullptr);
}

TEST_F(BaseViewEventTest, RemovesTheLanguageCallbackOfItsLayoutWhicheverObjectIsNamed)
{
    auto view = MakeCreatedView();

    BaseView::SViewObjectDeleteCB(static_cast<BaseView*>(view.get()), nullptr, mWindow, nullptr);

    EXPECT_EQ(Recorder::TakeOnly({"evas"}), Lines({kRemoveLanguage}));
    EXPECT_EQ(view->mLayout, nullptr);
    evas_object_event_callback_del(Content(), EVAS_CALLBACK_DEL, BaseView::SViewObjectDeleteCB);
}

TEST_F(BaseViewEventTest, LeavesTheLayoutsDeletionToTheViewsOwnHookFirst)
{
    auto view = std::make_unique<FakeDeletionView>(mRecord);
    view->CreateView();
    Recorder::Take();

    evas_object_del(Content());

    EXPECT_EQ(Recorder::Take(), Lines({"view.OnLayoutDeleted", kRemoveLanguage}));
    EXPECT_EQ(view->mLayout, nullptr);
}

TEST_F(BaseViewEventTest, KeepsItsLayoutWhenItsHookIsCalledWithoutAController)
{
    auto view = MakeCreatedView();

    view->OnLayoutDeleted();

    EXPECT_EQ(view->mLayout, Content());
}

TEST_F(BaseViewEventTest, HearsOfTheLanguageThroughItsLayout)
{
    auto view = MakeCreatedView();

    evas_object_smart_callback_call(Content(), "language,changed", nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"view.OnLanguageChanged"}));
}

TEST_F(BaseViewEventTest, HearsOfTheTheme)
{
    auto view = MakeCreatedView();

    BaseView::SThemeChangedCB(static_cast<BaseView*>(view.get()));

    EXPECT_EQ(Recorder::Take(), Lines({"view.OnThemeChanged"}));
}

TEST_F(BaseViewEventTest, AThemeWithoutAViewIsLogged)
{
    BaseView::SThemeChangedCB(nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"error(SThemeChangedCB) pThis is NULL"}));
}

TEST_F(BaseViewEventTest, TakesLanguageAndDeletionOffALayoutThatOutlivesIt)
{
    auto view = MakeCreatedView();

    view.reset();

    EXPECT_EQ(Recorder::Take(),
              Lines({kRemoveLanguage, "evas_object_event_callback_del(content1, " + kDeletion +
                                          ", BaseView::SViewObjectDeleteCB)"}));
    EXPECT_EQ(mRecord.use_count(), 1);
    evas_object_smart_callback_call(Content(), "language,changed", nullptr);
    evas_object_del(Content());
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(BaseViewEventTest, TakesItsCallbacksOffTheLayoutThatItWiredAndThenReleasesItsRecord)
{
    auto record = std::make_shared<FakeRecord>();
    record->mViewLayout = Content();
    auto view = std::make_unique<FakeView>(record);
    view->CreateView();
    view->mRecord.reset();
    record->mViewLayout = nullptr;
    record.reset();
    Recorder::Take();

    view.reset();

    EXPECT_EQ(Recorder::Take(), Lines({kRemoveLanguage,
                                       "evas_object_event_callback_del(content1, " + kDeletion +
                                           ", BaseView::SViewObjectDeleteCB)",
                                       "record gone"}));
}

TEST_F(BaseViewEventTest, StaysTheListenerOfAHandleThatOutlivesIt)
{
    auto view = MakeCreatedView();
    auto handle = view->Show(false);
    const QivoUi::NaviFramePopEventListener* dead = view.get();

    view.reset();

    EXPECT_EQ(handle->mPopEventListener, dead);
    EXPECT_NE(handle->mNaviFrameItem, nullptr);
}

TEST_F(BaseViewEventTest, LeavesTheToolkitAloneWhenItDiesAfterItsLayout)
{
    auto view = MakeCreatedView();
    evas_object_del(Content());
    Recorder::Take();

    view.reset();

    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(BaseViewEventTest, ItsControllerHearsOnceThatThePoppedScreenIsDeleted)
{
    Push();
    auto view = MakeCreatedView();
    view->mViewEventListener = &mController;
    auto handle = view->Show(false);
    Recorder::Take();

    handle->Pop(true, nullptr);

    TakeUntil("controller.OnViewDeleteEvent");
    EXPECT_EQ(view->mLayout, nullptr);
    EXPECT_EQ(Recorder::TakeOnly({"controller"}), Lines());
}

TEST_F(BaseViewEventTest, AControllerMayPushAnotherScreenWhenTheLayoutIsDeleted)
{
    auto view = MakeCreatedView();
    view->mViewEventListener = &mController;
    auto handle = view->Show(false);
    mController.mReactions["OnViewDeleteEvent"] = [this] { Push(); };

    handle->DeleteItem();

    EXPECT_EQ(Stack(), Lines({"item2"}));
    EXPECT_EQ(view->mLayout, nullptr);
}

TEST_F(BaseViewEventTest, AControllerMayDeleteTheScreenOnTheBackKey)
{
    auto view = MakeCreatedView();
    view->mViewEventListener = &mController;
    auto handle = view->Show(false);
    mController.mReactions["OnViewBackEvent"] = [&] { handle->DeleteItem(); };

    Platform::PressBack(Content());

    EXPECT_TRUE(mFrame->IsNaviFrameEmpty());
    EXPECT_EQ(view->mLayout, nullptr);
}

} // namespace
