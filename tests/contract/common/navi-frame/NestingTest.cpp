#include "common/BaseViewFixture.h"

using QivoUi::NaviFrame;
using QivoUi::NaviFrameItemPopHandler;

namespace
{

// What happens inside what happens: callbacks that undo what called them.
class NestingTest : public BaseViewFixture
{
};

TEST_F(NestingTest, AViewMayDieInsideItsBackEvent)
{
    auto view = MakeCreatedView();
    view->mViewEventListener = &mController;
    mController.mReactions["OnViewBackEvent"] = [&] { view.reset(); };

    Platform::PressBack(Content());

    EXPECT_EQ(Recorder::TakeOnly({"mark", "warn", "error", "controller"}),
              Lines({"mark(SLayoutBackCB)", "controller.OnViewBackEvent"}));
    evas_object_del(Content());
    EXPECT_EQ(Recorder::TakeOnly({"warn", "error", "controller"}), Lines());
}

TEST_F(NestingTest, AViewMayDieInsideItsPopEvent)
{
    Push();
    auto view = MakeCreatedView();
    view->mViewEventListener = &mController;
    auto handle = mHandles.emplace_back(view->Show(false));
    mController.mReactions["OnViewPopEvent"] = [&] { view.reset(); };
    Recorder::Take();

    handle->Pop(true, nullptr);

    EXPECT_EQ(Recorder::TakeOnly({"warn", "error", "controller"}),
              Lines({"controller.OnViewPopEvent"}));
    EXPECT_EQ(handle->mNaviFrameItem, nullptr);
    EXPECT_EQ(Stack(), Lines({"item1"}));
}

TEST_F(NestingTest, AScreenThatResumesMayDeleteOneThatIsAboutToBeDeleted)
{
    FakeStateListener top("top");
    auto bottom = PushHandle();
    Push();
    auto third = PushHandle();
    PushHandle(&top);
    top.mReactions["OnItemResume"] = [&] { third->DeleteItem(); };
    Recorder::Take();

    bottom->DeleteAboveNaviFrameItem();

    // The one that is gone already is named and asked for again; the toolkit knows it no more.
    Lines log = Recorder::TakeOnly({"error", "top"});
    std::transform(log.begin(), log.end(), log.begin(), Recorder::WithNames);
    EXPECT_EQ(log, Lines({"error(DeleteAboveItems) Delete naviframeItem item2", "top.OnItemResume",
                          "top.OnItemResume", "error(DeleteAboveItems) Delete naviframeItem item3",
                          "error(DeleteAboveItems) Delete naviframeItem item4"}));
    EXPECT_EQ(Stack(), Lines({"item1"}));
}

TEST_F(NestingTest, AScreenMayDeleteItselfAndTheOneBelowWhenItIsCovered)
{
    FakeStateListener covered("covered");
    auto bottom = PushHandle();
    auto middle = PushHandle(&covered);
    covered.mReactions["OnItemPause"] = [&]
    {
        middle->DeleteItem();
        bottom->DeleteItem();
    };
    Recorder::Take();

    Push();

    EXPECT_EQ(Recorder::TakeOnly({"error", "covered"}), Lines({"covered.OnItemPause"}));
    EXPECT_EQ(Stack(), Lines({"item3"}));
}

TEST_F(NestingTest, AHandleMayBeReleasedInsideAnothersConsent)
{
    FakePopListener pop;
    Push();
    auto top = PushHandle();
    top->mPopEventListener = &pop;
    pop.mReactions["OnViewPoped"] = [&] { mHandles.front().reset(); };
    Recorder::Take();

    top->Pop(true, nullptr);

    EXPECT_EQ(Stack(), Lines({"item1"}));
    EXPECT_EQ(top->mNaviFrameItem, nullptr);
}

TEST_F(NestingTest, HandlesOfADestroyedFrameFindAFreshOneWithoutAWidget)
{
    Push();
    auto top = PushHandle();
    NaviFrame::Destroy();
    Recorder::Take();

    top->Pop(true, nullptr);
    top->PopTo();

    Lines log = Recorder::TakeLog();
    std::transform(log.begin(), log.end(), log.begin(), Recorder::WithNames);
    EXPECT_EQ(log, Lines({"error(PopItem) pop fail[[PopItem]mNaviFrame is NULL]",
                          "error(PopToItem) [Failed] Invalid Naviframe : (nil) naviframeItem : "
                          "item2"}));
    EXPECT_NE(NaviFrame::mInstance, nullptr);
    EXPECT_EQ(NaviFrame::mInstance->mNaviFrame, nullptr);
}

TEST_F(NestingTest, TheFrameMayBeDestroyedWhileItemsLiveAndTheirHandlesGoFirst)
{
    FakeStateListener listener;
    Push(&listener);
    Push();
    NaviFrame::Destroy();
    mHandles.clear();
    Recorder::Take();

    evas_object_del(mLayout);

    EXPECT_EQ(Recorder::Take(), Lines());
    EXPECT_EQ(NaviFrame::mInstance, nullptr);
}

TEST_F(NestingTest, ALowerListenerMayReleaseTheHandleAndDestroyTheFrame)
{
    FakeLowerListener lower;
    auto handle = PushHandle();
    mHandles.clear();
    NaviFrameItemPopHandler* popped = handle.get();
    mFrame->mNaviFrmaeLowerEventListener = &lower;
    lower.mReactions["OnNaviFrameLowered"] = [&]
    {
        handle.reset();
        NaviFrame::Destroy();
    };
    Recorder::Take();

    popped->Pop(true, nullptr);

    EXPECT_EQ(Recorder::TakeOnly({"elm_win", "lower", "error", "warn"}),
              Lines({"elm_win_lower(window)", "lower.OnNaviFrameLowered"}));
    EXPECT_EQ(NaviFrame::mInstance, nullptr);
}

TEST_F(NestingTest, AScreenMayDestroyTheFrameWhenTheApplicationPausesOrResumes)
{
    FakeStateListener listener("screen");
    for (const char* call : {"OnItemPause", "OnItemResume"})
    {
        NaviFrame* frame = NaviFrame::GetInstance();
        frame->CreateNaviFrame(mLayout);
        mHandles = {frame->PushNaviframeItem(MakeRecord(&listener), false)};
        listener.mReactions[call] = [] { NaviFrame::Destroy(); };
        Recorder::Take();

        call == std::string("OnItemPause") ? frame->OnAppPause() : frame->OnAppResume();

        EXPECT_EQ(Recorder::TakeOnly({"screen"}), Lines({std::string("screen.") + call}));
        EXPECT_EQ(NaviFrame::mInstance, nullptr);
        mHandles.clear();
    }
}

TEST_F(NestingTest, APopDuringItsOwnPushsTransitionIsNotMadeButItsListenerHearsOfTheEnd)
{
    FakeTransitionListener transition;
    Push();
    auto pushed = PushAnimated();
    pushed->Pop(true, &transition);
    EXPECT_NE(pushed->mNaviFrameItem, nullptr);
    Recorder::Take();

    EXPECT_TRUE(Toolkit::RunUntil([&] { return !mFrame->mPopTransitionEventListener; }));

    EXPECT_EQ(Recorder::TakeOnly({"info", "transition"}),
              Lines({"transition.OnPopTransitionFinished",
                     "info(SNaviFrameTransitionFinishedCB) Animation Done"}));
    EXPECT_EQ(Stack(), Lines({"item1", "item2"}));
    pushed->Pop(true, nullptr);
    EXPECT_EQ(Stack(), Lines({"item1"}));
}

TEST_F(NestingTest, APushDuringAPopsTransitionEndsBoth)
{
    FakeTransitionListener transition;
    FakeStateListener pushed("pushed");
    Push();
    auto top = PushHandle();
    top->Pop(true, &transition);
    PushAnimated(&pushed);
    Recorder::Take();

    EXPECT_TRUE(Toolkit::RunUntil([&] { return !mFrame->mPopTransitionEventListener; }));

    EXPECT_EQ(Recorder::TakeOnly({"info", "transition"}),
              Lines({"info(SNaviFrameTransitionFinishedCB) Animation Done",
                     "transition.OnPopTransitionFinished"}));
    EXPECT_EQ(Stack(), Lines({"item1", "item3"}));
}

TEST_F(NestingTest, OfTwoQuickPushesOneEndIsToldAtOnceAndOneAtALaterPop)
{
    const std::string done = "info(SNaviFrameTransitionFinishedCB) Animation Done";
    FakeStateListener middle("middle");
    FakeStateListener top("top");
    Push();
    PushAnimated(&middle);
    auto handle = PushAnimated(&top);
    TakeUntil("top.OnItemTransitionFinished");

    handle->Pop(true, nullptr);

    const Lines lines = TakeUntil("middle.OnItemTransitionFinished");
    EXPECT_EQ(std::count(lines.begin(), lines.end(), done), 1);
}

} // namespace
