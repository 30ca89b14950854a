#include "common/NaviFrame.h"

#include "common/DirtyMemory.h"
#include "common/navi-frame/NaviFrameFixture.h"

using QivoUi::NaviFrame;

namespace
{

// Read before main() and any test.
const NaviFrame* const kInstanceAtStart = NaviFrame::mInstance;
const bool kIsAliveAtStart = NaviFrame::mIsAlive;

class NaviFrameTest : public NaviFrameFixture
{
protected:
    NaviFrame* Renew()
    {
        NaviFrame::Destroy();
        mFrame = NaviFrame::GetInstance();
        Recorder::Take();
        return mFrame;
    }
};

TEST_F(NaviFrameTest, DoesNotExistWhenTheProcessStarts)
{
    EXPECT_EQ(kInstanceAtStart, nullptr);
    EXPECT_FALSE(kIsAliveAtStart);
}

TEST_F(NaviFrameTest, IsMadeOnFirstUseAndThenAlwaysTheSame)
{
    NaviFrame::Destroy();
    ASSERT_EQ(NaviFrame::mInstance, nullptr);

    NaviFrame* frame = NaviFrame::GetInstance();

    EXPECT_NE(frame, nullptr);
    EXPECT_EQ(NaviFrame::mInstance, frame);
    EXPECT_EQ(NaviFrame::GetInstance(), frame);
    EXPECT_TRUE(NaviFrame::mIsAlive);
}

TEST_F(NaviFrameTest, IsAloneAliveWhileItExists)
{
    EXPECT_TRUE(NaviFrame::mIsAlive);

    NaviFrame::Destroy();

    EXPECT_EQ(NaviFrame::mInstance, nullptr);
    EXPECT_FALSE(NaviFrame::mIsAlive);
}

TEST_F(NaviFrameTest, DestroyingNothingDoesNothing)
{
    NaviFrame::Destroy();
    Recorder::Take();

    NaviFrame::Destroy();

    EXPECT_EQ(NaviFrame::mInstance, nullptr);
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(NaviFrameTest, StartsEmpty)
{
    InDirtyMemory<NaviFrame> frame;

    EXPECT_EQ(frame->mNaviFrame, nullptr);
    EXPECT_EQ(frame->mWindow, nullptr);
    EXPECT_FALSE(frame->mIsPaused);
    EXPECT_TRUE(frame->mStateListenerMap.empty());
    EXPECT_EQ(frame->mNaviFrmaeLowerEventListener, nullptr);
    EXPECT_EQ(frame->mPopTransitionEventListener, nullptr);
}

TEST_F(NaviFrameTest, BearsTheApplicationsOtherEventsInSilence)
{
    FakeStateListener listener;
    Push(&listener);
    Recorder::Take();

    mFrame->OnAppCreate();
    mFrame->OnAppTerminate();
    mFrame->OnSystemLangChanged();

    EXPECT_EQ(Recorder::Take(), Lines());
    EXPECT_FALSE(mFrame->mIsPaused);
}

TEST_F(NaviFrameTest, KeepsAnyMainWindow)
{
    mFrame->SetMainWindow(mLayout);
    EXPECT_EQ(mFrame->mWindow, mLayout);

    mFrame->SetMainWindow(nullptr);
    EXPECT_EQ(mFrame->mWindow, nullptr);
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(NaviFrameTest, PutsTheWidgetIntoTheLayoutsContent)
{
    NaviFrame* frame = Renew();

    frame->CreateNaviFrame(mLayout);

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_naviframe_add(layout1)",
                     "elm_object_part_content_set(layout1, 'elm.swallow.content', naviframe2)"}));
    EXPECT_EQ(Recorder::NameOf(frame->mNaviFrame), "naviframe2");
    EXPECT_EQ(elm_object_part_content_get(mLayout, "elm.swallow.content"), frame->mNaviFrame);
}

TEST_F(NaviFrameTest, MakesNoWidgetWithoutALayout)
{
    NaviFrame* frame = Renew();

    frame->CreateNaviFrame(nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"error(CreateNaviFrame) [Failed] Invalid layout"}));
    EXPECT_EQ(frame->mNaviFrame, nullptr);
}

TEST_F(NaviFrameTest, PutsNothingIntoTheLayoutWhenTheToolkitMakesNoWidget)
{
    NaviFrame* frame = Renew();
    Recorder::Fail("elm_naviframe_add");

    frame->CreateNaviFrame(mLayout);

    EXPECT_EQ(Recorder::Take(), Lines({"elm_naviframe_add(layout1)",
                                       "error(CreateNaviFrame) [Failed] Create NaviFrame"}));
    EXPECT_EQ(frame->mNaviFrame, nullptr);
}

TEST_F(NaviFrameTest, KeepsItsWidgetWhenItIsGivenNoLayout)
{
    mFrame->CreateNaviFrame(nullptr);

    EXPECT_EQ(Recorder::NameOf(mFrame->mNaviFrame), "naviframe1");
}

TEST_F(NaviFrameTest, ForgetsItsWidgetWhenTheToolkitMakesNoOther)
{
    Recorder::Fail("elm_naviframe_add");

    mFrame->CreateNaviFrame(mLayout);

    EXPECT_EQ(mFrame->mNaviFrame, nullptr);
}

TEST_F(NaviFrameTest, OffersTheWidgetAsTheParentOfViews)
{
    EXPECT_EQ(Recorder::NameOf(mFrame->GetParent()), "naviframe1");
    EXPECT_EQ(Renew()->GetParent(), nullptr);
}

TEST_F(NaviFrameTest, IsEmptyUntilAScreenIsPushed)
{
    EXPECT_TRUE(mFrame->IsNaviFrameEmpty());
    EXPECT_EQ(Recorder::Take(), Lines({"elm_naviframe_top_item_get(naviframe1)"}));

    Push();
    Recorder::Take();

    EXPECT_FALSE(mFrame->IsNaviFrameEmpty());
    EXPECT_EQ(Recorder::Take(), Lines({"elm_naviframe_top_item_get(naviframe1)"}));
}

TEST_F(NaviFrameTest, SendsTheApplicationToTheBackgroundByLoweringTheWindow)
{
    FakeLowerListener lower;
    mFrame->mNaviFrmaeLowerEventListener = &lower;

    mFrame->TriggerToAppPaused();

    EXPECT_EQ(Recorder::Take(), Lines({"elm_win_lower(window)"}));
}

TEST_F(NaviFrameTest, CannotGoToTheBackgroundWithoutAWindow)
{
    mFrame->SetMainWindow(nullptr);

    mFrame->TriggerToAppPaused();

    EXPECT_EQ(Recorder::Take(), Lines({"error(TriggerToAppPaused) Invalid Window"}));
}

TEST_F(NaviFrameTest, PausesAndResumesOnlyTheTopScreenWithTheApplication)
{
    FakeStateListener below("below");
    FakeStateListener top("top");
    Push(&below);
    Push(&top);
    Recorder::Take();

    mFrame->OnAppPause();
    EXPECT_TRUE(mFrame->mIsPaused);
    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_naviframe_top_item_get(naviframe1)", "top.OnItemPause"}));

    mFrame->OnAppResume();
    EXPECT_FALSE(mFrame->mIsPaused);
    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_naviframe_top_item_get(naviframe1)", "top.OnItemResume"}));
}

TEST_F(NaviFrameTest, IsAlreadyPausedOrResumedWhenTheScreenHearsOfIt)
{
    FakeStateListener listener;
    Push(&listener);
    bool wasPaused = false;
    bool wasResumed = false;
    listener.mReactions["OnItemPause"] = [&] { wasPaused = mFrame->mIsPaused; };
    listener.mReactions["OnItemResume"] = [&] { wasResumed = !mFrame->mIsPaused; };

    mFrame->OnAppPause();
    mFrame->OnAppResume();

    EXPECT_TRUE(wasPaused);
    EXPECT_TRUE(wasResumed);
}

TEST_F(NaviFrameTest, PausesAndResumesWithoutAnyScreen)
{
    mFrame->OnAppPause();
    EXPECT_TRUE(mFrame->mIsPaused);

    mFrame->OnAppResume();
    EXPECT_FALSE(mFrame->mIsPaused);
    EXPECT_EQ(Recorder::Take(), Lines({"elm_naviframe_top_item_get(naviframe1)",
                                       "elm_naviframe_top_item_get(naviframe1)"}));
}

TEST_F(NaviFrameTest, PausesAndResumesPastATopScreenThatDoesNotListen)
{
    FakeStateListener below("below");
    Push(&below);
    Elm_Object_Item* top = Push();
    Recorder::Take();

    mFrame->OnAppPause();
    mFrame->OnAppResume();
    mFrame->mStateListenerMap[top] = nullptr;
    mFrame->OnAppPause();
    mFrame->OnAppResume();

    EXPECT_EQ(Recorder::TakeOnly({"below"}), Lines());
}

TEST_F(NaviFrameTest, MayBePausedWhileAScreenPushesInItsPause)
{
    FakeStateListener old("old");
    FakeStateListener pushed("pushed");
    Push(&old);
    Recorder::Take();
    old.mReactions["OnItemPause"] = [&] { Push(&pushed); };

    mFrame->OnAppPause();

    EXPECT_EQ(Recorder::TakeOnly({"old", "pushed"}),
              Lines({"old.OnItemPause", "pushed.OnItemResume"}));
    EXPECT_EQ(Stack(), Lines({"item1", "item2"}));
}

TEST_F(NaviFrameTest, TakesItsPushTransitionCallbackAlongButLeavesTheWidget)
{
    NaviFrame::Destroy();

    EXPECT_EQ(Recorder::Take(),
              Lines({"evas_object_smart_callback_del(naviframe1, 'transition,finished', "
                     "NaviFrame::SNaviFrameTransitionFinishedCB)"}));
    EXPECT_EQ(Recorder::NameOf(elm_object_part_content_get(mLayout, "elm.swallow.content")),
              "naviframe1");
}

TEST_F(NaviFrameTest, TakesOnlyOneOfSeveralPushTransitionCallbacksAlong)
{
    Push();
    PushAnimated();
    PushAnimated();
    Evas_Object* widget = mFrame->mNaviFrame;
    const void* destroyed = mFrame;

    NaviFrame::Destroy();

    const auto remove = [widget]
    {
        return evas_object_smart_callback_del(widget, "transition,finished",
                                              NaviFrame::SNaviFrameTransitionFinishedCB);
    };
    EXPECT_EQ(remove(), destroyed);
    EXPECT_EQ(remove(), nullptr);
}

TEST_F(NaviFrameTest, LeavesTheToolkitAloneWhenDestroyedWithoutAWidget)
{
    Renew();

    NaviFrame::Destroy();

    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(NaviFrameTest, KeepsTheItemsButNoneOfItsOwnStateWhenMadeAgain)
{
    FakeStateListener listener;
    Elm_Object_Item* item = Push(&listener);
    mFrame->OnAppPause();
    Evas_Object* widget = mFrame->mNaviFrame;

    NaviFrame* frame = Renew();

    EXPECT_EQ(elm_naviframe_top_item_get(widget), item);
    EXPECT_EQ(frame->mNaviFrame, nullptr);
    EXPECT_EQ(frame->mWindow, nullptr);
    EXPECT_FALSE(frame->mIsPaused);
    EXPECT_TRUE(frame->mStateListenerMap.empty());
}

} // namespace
