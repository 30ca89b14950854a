#include "common/navi-frame/NaviFrameFixture.h"
#include <stdexcept>

using QivoUi::NaviFrame;
using QivoUi::NaviFramePopTransitionEventListener;

namespace
{

const std::string kRegister = "evas_object_smart_callback_add(naviframe1, 'transition,finished', "
                              "NaviFrame::SNaviFramePopTransitionFinishedCB, frame)";
const std::string kUnregister = "evas_object_smart_callback_del(naviframe1, 'transition,finished', "
                                "NaviFrame::SNaviFramePopTransitionFinishedCB)";

const Lines kAnimatedPop = {
    "elm_naviframe_top_item_get(naviframe1)", "elm_naviframe_bottom_item_get(naviframe1)",
    kRegister, "elm_naviframe_item_pop(naviframe1)", "info(PopItem) pop animation start"};

using NaviFramePopTest = NaviFrameFixture;

TEST_F(NaviFramePopTest, PopsTheTopScreenWithATransition)
{
    FakeTransitionListener transition;
    Push();
    Elm_Object_Item* top = Push();
    Recorder::Take();

    mFrame->PopItem(top, true, &transition);

    EXPECT_EQ(Recorder::Take(), kAnimatedPop);
    EXPECT_EQ(mFrame->mPopTransitionEventListener, &transition);
    EXPECT_EQ(Stack(), Lines({"item1"}));
}

TEST_F(NaviFramePopTest, TellsTheTransitionListenerOnceWhenTheTransitionHasEnded)
{
    FakeTransitionListener transition;
    Push();
    mFrame->PopItem(Push(), true, &transition);
    Recorder::Take();

    EXPECT_TRUE(Toolkit::RunUntil([&] { return !mFrame->mPopTransitionEventListener; }));

    EXPECT_EQ(Recorder::TakeOnly({"evas_object_smart", "transition"}),
              Lines({kUnregister, "transition.OnPopTransitionFinished"}));
    EndTransition();
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(NaviFramePopTest, TheEndOfAPopCallsExactlyTheListenerAfterTheCallbackIsGone)
{
    FakeTransitionListener transition;
    mFrame->mPopTransitionEventListener = &transition;

    NaviFrame::SNaviFramePopTransitionFinishedCB(mFrame, nullptr, nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({kUnregister, "transition.OnPopTransitionFinished"}));
    EXPECT_EQ(mFrame->mPopTransitionEventListener, nullptr);
}

TEST_F(NaviFramePopTest, TheEndOfAPopWithoutAListenerOnlyRemovesTheCallback)
{
    Push();
    mFrame->PopItem(Push(), true, nullptr);
    Recorder::Take();

    EndTransition();
    EndTransition();

    EXPECT_EQ(Recorder::Take(), Lines({kUnregister}));
}

TEST_F(NaviFramePopTest, ALaterAnimatedPopReplacesTheListenerOfTheFirst)
{
    FakeTransitionListener first("first");
    FakeTransitionListener second("second");
    Push();
    Elm_Object_Item* middle = Push();
    mFrame->PopItem(Push(), true, &first);

    mFrame->PopItem(middle, true, &second);

    EXPECT_EQ(mFrame->mPopTransitionEventListener, &second);
    Recorder::Take();
    EndTransition();
    EndTransition();
    EXPECT_EQ(Recorder::TakeOnly({"first", "second"}), Lines({"second.OnPopTransitionFinished"}));
}

TEST_F(NaviFramePopTest, ALaterAnimatedPopWithoutAListenerForgetsTheFirst)
{
    FakeTransitionListener first("first");
    Push();
    Elm_Object_Item* middle = Push();
    mFrame->PopItem(Push(), true, &first);

    mFrame->PopItem(middle, true, nullptr);

    EXPECT_EQ(mFrame->mPopTransitionEventListener, nullptr);
}

TEST_F(NaviFramePopTest, DeletesTheTopScreenAtOnceWhenNotAnimated)
{
    FakeTransitionListener transition;
    FakeTransitionListener running("running");
    mFrame->mPopTransitionEventListener = &running;
    Push();
    Elm_Object_Item* top = Push();
    Recorder::Take();

    mFrame->PopItem(top, false, &transition);

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_naviframe_top_item_get(naviframe1)",
                     "elm_naviframe_bottom_item_get(naviframe1)", "elm_object_item_del(item2)",
                     "elm_naviframe_top_item_get(naviframe1)"}));
    EXPECT_EQ(mFrame->mPopTransitionEventListener, &running);
    EXPECT_EQ(Stack(), Lines({"item1"}));
}

TEST_F(NaviFramePopTest, NeverCallsTheTransitionListenerOfAPopThatIsNotAnimated)
{
    FakeTransitionListener transition;
    Push();
    mFrame->PopItem(Push(), false, &transition);

    EndTransition();

    EXPECT_EQ(Recorder::TakeOnly({"transition"}), Lines());
}

TEST_F(NaviFramePopTest, PoppingTheOnlyItemLowersTheWindowAndKeepsTheItem)
{
    FakeLowerListener lower;
    FakeTransitionListener transition;
    mFrame->mNaviFrmaeLowerEventListener = &lower;
    Elm_Object_Item* item = Push();
    for (const bool animated : {true, false})
    {
        Recorder::Take();

        mFrame->PopItem(item, animated, &transition);

        EXPECT_EQ(Recorder::Take(), Lines({"elm_naviframe_top_item_get(naviframe1)",
                                           "elm_naviframe_bottom_item_get(naviframe1)",
                                           "elm_win_lower(window)", "lower.OnNaviFrameLowered"}));
        EXPECT_EQ(Stack(), Lines({"item1"}));
    }
    EXPECT_EQ(mFrame->mPopTransitionEventListener, nullptr);
}

TEST_F(NaviFramePopTest, WarnsWhenNobodyHearsThatTheWindowWasLowered)
{
    Elm_Object_Item* item = Push();
    Recorder::Take();

    mFrame->PopItem(item, true, nullptr);

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_naviframe_top_item_get(naviframe1)",
                     "elm_naviframe_bottom_item_get(naviframe1)", "elm_win_lower(window)",
                     "warn(PopItem) mNaviFrmaeLowerEventListener is NULL"}));
    EXPECT_EQ(Stack(), Lines({"item1"}));
}

TEST_F(NaviFramePopTest, CannotLowerTheWindowThatItWasNotGiven)
{
    FakeLowerListener lower;
    mFrame->mNaviFrmaeLowerEventListener = &lower;
    mFrame->SetMainWindow(nullptr);
    Elm_Object_Item* item = Push();
    Recorder::Take();

    mFrame->PopItem(item, true, nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"elm_naviframe_top_item_get(naviframe1)",
                                       "elm_naviframe_bottom_item_get(naviframe1)",
                                       "error(PopItem) pop fail[[PopItem]mWindow is NULL]"}));
}

TEST_F(NaviFramePopTest, PopsALaterScreenWithoutAnyWindow)
{
    mFrame->SetMainWindow(nullptr);
    Push();
    Elm_Object_Item* top = Push();
    Recorder::Take();

    mFrame->PopItem(top, true, nullptr);

    EXPECT_EQ(Recorder::Take(), kAnimatedPop);
}

TEST_F(NaviFramePopTest, PopsNothingWithoutAWidget)
{
    Elm_Object_Item* item = Push();
    NaviFrame::Destroy();
    mFrame = NaviFrame::GetInstance();
    Recorder::Take();

    EXPECT_NO_THROW(mFrame->PopItem(item, true, nullptr));

    EXPECT_EQ(Recorder::Take(), Lines({"error(PopItem) pop fail[[PopItem]mNaviFrame is NULL]"}));
}

TEST_F(NaviFramePopTest, LetsNoExceptionOfAListenerOut)
{
    FakeLowerListener lower;
    lower.mReactions["OnNaviFrameLowered"] = [] { throw std::logic_error("no home"); };
    mFrame->mNaviFrmaeLowerEventListener = &lower;
    Elm_Object_Item* item = Push();
    Recorder::Take();

    EXPECT_NO_THROW(mFrame->PopItem(item, true, nullptr));

    EXPECT_EQ(Recorder::TakeLog(), Lines({"error(PopItem) pop fail[no home]"}));
}

TEST_F(NaviFramePopTest, PopsNoScreenOfAnEmptyStack)
{
    Elm_Object_Item* item = Push();
    mFrame->DeleteItem(item);
    Recorder::Take();

    mFrame->PopItem(item, true, nullptr);

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_naviframe_top_item_get(naviframe1)",
                     "error(PopItem) pop fail[[PopItem]naviFrameItem doesn't top item]"}));
}

TEST_F(NaviFramePopTest, PoppingNoItemOfAnEmptyStackLowersTheWindow)
{
    mFrame->PopItem(nullptr, true, nullptr);

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_naviframe_top_item_get(naviframe1)",
                     "elm_naviframe_bottom_item_get(naviframe1)", "elm_win_lower(window)",
                     "warn(PopItem) mNaviFrmaeLowerEventListener is NULL"}));
}

TEST_F(NaviFramePopTest, CatchesOnlyStandardExceptions)
{
    FakeLowerListener lower;
    lower.mReactions["OnNaviFrameLowered"] = [] { throw 7; };
    mFrame->mNaviFrmaeLowerEventListener = &lower;
    Elm_Object_Item* item = Push();
    Recorder::Take();

    EXPECT_THROW(mFrame->PopItem(item, true, nullptr), int);

    EXPECT_EQ(Recorder::TakeLog(), Lines());
}

TEST_F(NaviFramePopTest, HasKeptTheListenerBeforeTheNaviframeAsksForConsent)
{
    FakePopListener pop;
    FakeTransitionListener transition;
    NaviFramePopTransitionEventListener* kept = nullptr;
    pop.mReactions["OnViewPoped"] = [&] { kept = mFrame->mPopTransitionEventListener; };
    Push();
    Elm_Object_Item* top = Push();
    mHandles.back()->mPopEventListener = &pop;

    mFrame->PopItem(top, true, &transition);

    EXPECT_EQ(kept, &transition);
}

TEST_F(NaviFramePopTest, PopsNoScreenThatIsNotOnTop)
{
    FakeTransitionListener transition;
    const Lines refused = {"elm_naviframe_top_item_get(naviframe1)",
                           "error(PopItem) pop fail[[PopItem]naviFrameItem doesn't top item]"};
    Elm_Object_Item* bottom = Push();
    Push();
    for (const bool animated : {true, false})
    {
        Recorder::Take();

        EXPECT_NO_THROW(mFrame->PopItem(bottom, animated, &transition));

        EXPECT_EQ(Recorder::Take(), refused);
        EXPECT_EQ(Stack(), Lines({"item1", "item2"}));
        EXPECT_EQ(mFrame->mPopTransitionEventListener, nullptr);
    }
    mFrame->PopItem(nullptr, true, &transition);
    EXPECT_EQ(Recorder::Take(), refused);
}

TEST_F(NaviFramePopTest, ResumesTheScreenBelowWhenThePoppedOneIsDeleted)
{
    FakeStateListener below("below");
    FakeStateListener top("top");
    Push(&below);
    Elm_Object_Item* item = Push(&top);
    Recorder::Take();

    mFrame->PopItem(item, true, nullptr);

    EXPECT_EQ(TakeUntil("below.OnItemResume").back(), "below.OnItemResume");
    EXPECT_EQ(mFrame->mStateListenerMap.count(item), 0u);
    EXPECT_EQ(mFrame->mStateListenerMap.size(), 1u);
}

TEST_F(NaviFramePopTest, APopListenerMayPushAScreenThatAsksInsteadOfLeaving)
{
    FakePopListener pop;
    pop.mIsAllowed = false;
    pop.mReactions["OnViewPoped"] = [this] { Push(); };
    Push();
    Elm_Object_Item* top = Push();
    mHandles.back()->mPopEventListener = &pop;

    mFrame->PopItem(top, true, nullptr);

    EXPECT_EQ(Stack(), Lines({"item1", "item2", "item3"}));
}

TEST_F(NaviFramePopTest, TheListenerOfARefusedPopHearsOfTheNextTransition)
{
    FakePopListener pop;
    FakeTransitionListener transition;
    pop.mIsAllowed = false;
    Push();
    Elm_Object_Item* top = Push();
    mHandles.back()->mPopEventListener = &pop;
    mFrame->PopItem(top, true, &transition);
    EXPECT_EQ(mFrame->mPopTransitionEventListener, &transition);
    PushAnimated();
    Recorder::Take();

    EndTransition();

    EXPECT_EQ(Recorder::TakeOnly({"transition"}), Lines({"transition.OnPopTransitionFinished"}));
    EXPECT_EQ(mFrame->mPopTransitionEventListener, nullptr);
}

TEST_F(NaviFramePopTest, ALowerListenerMayPushAScreen)
{
    FakeLowerListener lower;
    lower.mReactions["OnNaviFrameLowered"] = [this] { Push(); };
    mFrame->mNaviFrmaeLowerEventListener = &lower;

    mFrame->PopItem(Push(), true, nullptr);

    EXPECT_EQ(Stack(), Lines({"item1", "item2"}));
}

TEST_F(NaviFramePopTest, ATransitionListenerMayPushAScreen)
{
    FakeTransitionListener transition;
    transition.mReactions["OnPopTransitionFinished"] = [this] { Push(); };
    Push();
    mFrame->PopItem(Push(), true, &transition);

    EXPECT_TRUE(Toolkit::RunUntil([this] { return mHandles.size() == 3; }));

    EXPECT_EQ(Stack(), Lines({"item1", "item3"}));
}

TEST_F(NaviFramePopTest, AListenerOfAPopStartedAtTheEndOfAnotherIsForgottenAndNeverTold)
{
    FakeTransitionListener first("first");
    FakeTransitionListener second("second");
    Push();
    Elm_Object_Item* middle = Push();
    first.mReactions["OnPopTransitionFinished"] = [&] { mFrame->PopItem(middle, true, &second); };
    mFrame->PopItem(Push(), true, &first);
    Recorder::Take();

    EndTransition();
    EndTransition();

    EXPECT_EQ(Recorder::TakeOnly({"first", "second"}), Lines({"first.OnPopTransitionFinished"}));
    EXPECT_EQ(mFrame->mPopTransitionEventListener, nullptr);
    EXPECT_EQ(Stack(), Lines({"item1"}));
}

TEST_F(NaviFramePopTest, DestroyingTheFrameLeavesThePopTransitionCallback)
{
    Push();
    mFrame->PopItem(Push(), true, nullptr);
    Recorder::Take();

    NaviFrame::Destroy();

    EXPECT_EQ(Recorder::Take(),
              Lines({"evas_object_smart_callback_del(naviframe1, 'transition,finished', "
                     "NaviFrame::SNaviFrameTransitionFinishedCB)"}));
}

TEST_F(NaviFramePopTest, DestroyingTheFrameAfterARefusedPopLeavesThePopTransitionCallback)
{
    FakePopListener pop;
    pop.mIsAllowed = false;
    Push();
    Elm_Object_Item* top = Push();
    mHandles.back()->mPopEventListener = &pop;
    mFrame->PopItem(top, true, nullptr);
    Evas_Object* widget = mFrame->mNaviFrame;
    const void* destroyed = mFrame;

    NaviFrame::Destroy();

    EXPECT_EQ(evas_object_smart_callback_del(widget, "transition,finished",
                                             NaviFrame::SNaviFramePopTransitionFinishedCB),
              destroyed);
}

} // namespace
