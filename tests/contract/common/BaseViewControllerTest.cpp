#include "common/BaseViewController.h"

#include "common/FakeView.h"
#include "common/navi-frame/NaviFrameFixture.h"

using QivoUi::BaseViewController;
using QivoUi::NaviFrameItemPopHandler;

/** Records what it hears as "controller.Call". */
class FakeController : public BaseViewController, public FakeListener
{
public:
    FakeController() : FakeListener("controller") {}
    void Initialize() override { Hear("Initialize"); }
    void DeInitialize() override { Hear("DeInitialize"); }
};

/** A view that gives a handle of the test's own. */
class FakeShownView : public FakeView
{
public:
    FakeShownView() : FakeView(nullptr) {}
    std::shared_ptr<NaviFrameItemPopHandler> Show(bool animated) override
    {
        Recorder::Add(std::string("view.Show(") + (animated ? "true" : "false") + ", " +
                      (mViewEventListener ? "attached" : "alone") + ")");
        return mHandle;
    }

    std::shared_ptr<NaviFrameItemPopHandler> mHandle;
};

namespace
{

class BaseViewControllerTest : public NaviFrameFixture
{
protected:
    // Gives the controller a view of the layout "content1".
    void GiveView()
    {
        mView = std::make_shared<FakeView>(MakeRecord());
        mView->CreateView();
        mController.mBaseViewPtr = mView;
        Recorder::Take();
    }

    FakeController mController;
    std::shared_ptr<FakeView> mView;
};

TEST_F(BaseViewControllerTest, StartsWithoutViewAndHandle)
{
    EXPECT_EQ(mController.mBaseViewPtr, nullptr);
    EXPECT_EQ(mController.mPopHandlerPtr, nullptr);
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(BaseViewControllerTest, AttachesToTheViewThenShowsItAndKeepsTheHandle)
{
    auto view = std::make_shared<FakeShownView>();
    view->mHandle = std::make_shared<NaviFrameItemPopHandler>();
    mController.mBaseViewPtr = view;

    EXPECT_EQ(mController.ShowView(true), view->mHandle);

    EXPECT_EQ(Recorder::Take(), Lines({"view.Show(true, attached)"}));
    EXPECT_EQ(view->mViewEventListener, &mController);
    EXPECT_EQ(mController.mPopHandlerPtr, view->mHandle);
    EXPECT_EQ(view->mHandle.use_count(), 2);
}

TEST_F(BaseViewControllerTest, ShowsTheViewWithoutAnimationWhenTold)
{
    auto view = std::make_shared<FakeShownView>();
    view->mHandle = std::make_shared<NaviFrameItemPopHandler>();
    mController.mBaseViewPtr = view;

    mController.ShowView(false);

    EXPECT_EQ(Recorder::Take(), Lines({"view.Show(false, attached)"}));
}

TEST_F(BaseViewControllerTest, CannotShowBeforeThereIsAView)
{
    EXPECT_EQ(mController.ShowView(true), nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"error(ShowView) mBaseViewPtr is NULL"}));
}

TEST_F(BaseViewControllerTest, GivesItsEarlierHandleWhenThereIsNoView)
{
    auto handle = std::make_shared<NaviFrameItemPopHandler>();
    mController.mPopHandlerPtr = handle;

    EXPECT_EQ(mController.ShowView(true), handle);

    EXPECT_EQ(mController.mPopHandlerPtr, handle);
    EXPECT_EQ(Recorder::Take(), Lines({"error(ShowView) mBaseViewPtr is NULL"}));
}

TEST_F(BaseViewControllerTest, ReportsAShowThatGaveNoHandleAndForgetsTheEarlierOne)
{
    auto view = std::make_shared<FakeShownView>();
    mController.mBaseViewPtr = view;
    mController.mPopHandlerPtr = std::make_shared<NaviFrameItemPopHandler>();

    EXPECT_EQ(mController.ShowView(true), nullptr);

    EXPECT_EQ(Recorder::Take(),
              Lines({"view.Show(true, attached)", "error(ShowView) [Failed] Get Pop Handler"}));
    EXPECT_EQ(mController.mPopHandlerPtr, nullptr);
}

TEST_F(BaseViewControllerTest, IgnoresTheBackKeyAfterAFailedShow)
{
    GiveView();
    Recorder::Fail("elm_naviframe_item_push");
    mController.ShowView(true);
    Recorder::Take();

    Platform::PressBack(mView->mLayout);

    EXPECT_EQ(Recorder::Take(), Lines({"mark(SLayoutBackCB)"}));
}

TEST_F(BaseViewControllerTest, PopsItsScreenWithAnimationOnTheBackKey)
{
    FakeTransitionListener transition;
    Push();
    GiveView();
    mController.ShowView(false);
    mFrame->mPopTransitionEventListener = &transition;
    Recorder::Take();

    Platform::PressBack(mView->mLayout);

    EXPECT_EQ(Recorder::TakeLog(),
              Lines({"mark(SLayoutBackCB)", "info(PopItem) pop animation start"}));
    EXPECT_EQ(mFrame->mPopTransitionEventListener, nullptr);
    EXPECT_EQ(Stack(), Lines({"item1"}));
}

TEST_F(BaseViewControllerTest, LowersTheWindowOnTheBackKeyAsTheOnlyScreen)
{
    GiveView();
    mController.ShowView(true);
    Recorder::Take();

    Platform::PressBack(mView->mLayout);

    EXPECT_EQ(Recorder::TakeOnly({"elm_win", "controller"}), Lines({"elm_win_lower(window)"}));
    EXPECT_EQ(Stack(), Lines({"item1"}));
}

TEST_F(BaseViewControllerTest, AlwaysAllowsAPop)
{
    EXPECT_TRUE(mController.OnViewPopEvent());
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(BaseViewControllerTest, DeInitializesWhenTheViewsLayoutIsDeleted)
{
    mController.OnViewDeleteEvent();

    EXPECT_EQ(Recorder::Take(), Lines({"controller.DeInitialize"}));
}

TEST_F(BaseViewControllerTest, DeInitializesOnceWhenItsScreenHasBeenPopped)
{
    Push();
    GiveView();
    mController.ShowView(false);
    Recorder::Take();

    Platform::PressBack(mView->mLayout);
    EXPECT_EQ(Recorder::TakeOnly({"controller"}), Lines());

    TakeUntil("controller.DeInitialize");
    EXPECT_EQ(Recorder::TakeOnly({"controller"}), Lines());
}

TEST_F(BaseViewControllerTest, NeitherPopsNorDeInitializesAtItsEndButReleasesHandleThenView)
{
    auto controller = std::make_unique<FakeController>();
    controller->mBaseViewPtr = std::make_shared<FakeView>(MakeRecord());
    controller->mBaseViewPtr->CreateView();
    Recorder::Name(controller->ShowView(true).get(), "handle");
    Recorder::Take();

    controller.reset();

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_naviframe_item_pop_cb_set(item1, null, handle)",
                     "elm_object_item_del_cb_set(item1, null)",
                     "evas_object_smart_callback_del(content1, 'language,changed', "
                     "BaseView::SLanguageChangedCB)",
                     "evas_object_event_callback_del(content1, " +
                         std::to_string(EVAS_CALLBACK_DEL) + ", BaseView::SViewObjectDeleteCB)"}));
    EXPECT_EQ(Stack(), Lines({"item1"}));
}

TEST_F(BaseViewControllerTest, StaysTheListenerOfAViewThatOutlivesIt)
{
    auto controller = std::make_unique<FakeController>();
    auto view = std::make_shared<FakeView>(MakeRecord());
    view->CreateView();
    controller->mBaseViewPtr = view;
    controller->ShowView(true);
    const QivoUi::BaseViewEventListener* dead = controller.get();

    controller.reset();

    EXPECT_EQ(view->mViewEventListener, dead);
}

TEST_F(BaseViewControllerTest, ShowingTwicePushesTwiceAndKeepsTheSecondHandle)
{
    GiveView();
    auto first = mController.ShowView(false);
    Recorder::Name(first.get(), "first");

    auto second = mController.ShowView(false);

    EXPECT_NE(second, first);
    EXPECT_EQ(mController.mPopHandlerPtr, second);
    EXPECT_EQ(Stack(), Lines({"item1", "item2"}));

    first.reset();
    EXPECT_EQ(Recorder::Take(), Lines({"elm_naviframe_item_pop_cb_set(item1, null, first)",
                                       "elm_object_item_del_cb_set(item1, null)"}));
    EXPECT_EQ(Stack(), Lines({"item1", "item2"}));
}

TEST_F(BaseViewControllerTest, MayShowAnotherScreenWhenItDeInitializes)
{
    GiveView();
    auto handle = mController.ShowView(true);
    mController.mReactions["DeInitialize"] = [this] { Push(); };

    handle->DeleteItem();

    EXPECT_EQ(Stack(), Lines({"item2"}));
}

TEST_F(BaseViewControllerTest, MayDieWithItsViewWhenTheBackKeyLowersTheWindow)
{
    FakeLowerListener lower;
    auto controller = std::make_unique<FakeController>();
    auto view = std::make_shared<FakeView>(MakeRecord());
    view->CreateView();
    Evas_Object* layout = view->GetViewLayout();
    controller->mBaseViewPtr = std::move(view);
    controller->ShowView(true);
    mFrame->mNaviFrmaeLowerEventListener = &lower;
    lower.mReactions["OnNaviFrameLowered"] = [&] { controller.reset(); };
    Recorder::Take();

    Platform::PressBack(layout);

    EXPECT_EQ(Recorder::TakeOnly({"mark", "warn", "error", "lower", "controller"}),
              Lines({"mark(SLayoutBackCB)", "lower.OnNaviFrameLowered"}));
    EXPECT_EQ(controller, nullptr);
}

TEST_F(BaseViewControllerTest, MayReleaseItsHandleWhenItDeInitializesAfterADeletion)
{
    GiveView();
    mController.ShowView(true);
    Elm_Object_Item* item = mController.mPopHandlerPtr->mNaviFrameItem;
    mController.mReactions["DeInitialize"] = [this] { mController.mPopHandlerPtr.reset(); };

    mFrame->DeleteItem(item);

    EXPECT_EQ(mController.mPopHandlerPtr, nullptr);
    EXPECT_TRUE(mFrame->IsNaviFrameEmpty());
}

TEST_F(BaseViewControllerTest, LosesTheBackKeyDuringItsOwnPush)
{
    Push();
    GiveView();
    mController.ShowView(true);

    Platform::PressBack(mView->mLayout);
    TakeUntil("info(SNaviFrameTransitionFinishedCB) Animation Done");
    EXPECT_EQ(Stack(), Lines({"item1", "item2"}));

    Platform::PressBack(mView->mLayout);
    EXPECT_EQ(Stack(), Lines({"item1"}));
}

TEST_F(BaseViewControllerTest, ThePageOfAScreenShownTwiceGoesWithTheUpperOne)
{
    GiveView();
    auto first = mController.ShowView(false);
    mController.ShowView(false);

    Platform::PressBack(mView->mLayout);
    TakeUntil("controller.DeInitialize");

    EXPECT_EQ(Stack(), Lines({"item1"}));
    EXPECT_EQ(mView->mLayout, nullptr);
}

TEST_F(BaseViewControllerTest, ShowingAfterThePopPushesTheDeletedPage)
{
    Push();
    GiveView();
    mController.ShowView(false);
    Evas_Object* layout = mView->mLayout;
    Platform::PressBack(layout);
    TakeUntil("controller.DeInitialize");
    EXPECT_EQ(mView->mLayout, nullptr);

    mController.ShowView(false);

    EXPECT_EQ(Recorder::TakeOnly({"elm_naviframe_item_insert_after", "error"}),
              Lines({"elm_naviframe_item_insert_after(naviframe1, item1, '', null, null, "
                     "content2, 'empty')"}));
    EXPECT_EQ(Stack(), Lines({"item1", "item3"}));
}

TEST_F(BaseViewControllerTest, HearsOfThePopsEndBeforeItDeInitializes)
{
    FakeTransitionListener transition;
    Push();
    GiveView();
    mController.ShowView(false);
    mController.mPopHandlerPtr->Pop(true, &transition);
    Recorder::TakeOnly({"transition", "controller"});

    const Lines lines = TakeUntil("controller.DeInitialize");

    EXPECT_EQ(std::count(lines.begin(), lines.end(), "transition.OnPopTransitionFinished"), 1);
}

TEST_F(BaseViewControllerTest, MayDieInAJobAfterItDeInitialized)
{
    Push();
    auto controller = std::make_unique<FakeController>();
    controller->mBaseViewPtr = std::make_shared<FakeView>(MakeRecord());
    controller->mBaseViewPtr->CreateView();
    Evas_Object* layout = controller->mBaseViewPtr->GetViewLayout();
    controller->ShowView(false);
    mHandles.clear();
    controller->mReactions["DeInitialize"] = [&]
    {
        ecore_job_add([](void* data) { static_cast<decltype(controller)*>(data)->reset(); },
                      &controller);
    };

    Platform::PressBack(layout);

    EXPECT_TRUE(Toolkit::RunUntil([&] { return !controller; }));
    EXPECT_EQ(Stack(), Lines({"item1"}));
}

} // namespace
