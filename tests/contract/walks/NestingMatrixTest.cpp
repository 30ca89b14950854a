#include "common/BaseViewFixture.h"
#include <set>
#include <tuple>

namespace
{

class NestingMatrixTest;

/** When a screen, a controller or another listener is told something. */
struct Occasion
{
    const char* name;
    void (*bring)(NestingMatrixTest&, const std::function<void()>& deed);
};

/** What it does then. */
struct Deed
{
    const char* name;
    void (*run)(NestingMatrixTest&);
};

// Whatever a callback does to the stack, the stack bears it.
class NestingMatrixTest : public BaseViewFixture,
                          public testing::WithParamInterface<std::tuple<Occasion, Deed>>
{
public:
    // Three screens that listen; the top one is a view's.
    void SetUp() override
    {
        BaseViewFixture::SetUp();
        mBottom = PushHandle(&mBottomListener);
        mMiddle = PushHandle(&mMiddleListener);
        mRecord->mStateListener = &mTopListener;
        mView = MakeCreatedView();
        mView->mViewEventListener = &mController;
        mTop = mView->Show(false);
        Recorder::Take();
    }

    // Pops the view's screen, which the toolkit deletes when it is out of sight: here at once.
    void PopAndEnd()
    {
        Elm_Object_Item* item = mTop->mNaviFrameItem;
        mTop->Pop(true, nullptr);
        elm_object_item_del(item);
    }

    // Another screen comes and goes.
    void ExpectWork()
    {
        FakeStateListener last("last");
        auto handle = PushHandle(&last);
        Elm_Object_Item* item = handle->mNaviFrameItem;
        EXPECT_EQ(elm_naviframe_top_item_get(mFrame->mNaviFrame), item);
        EXPECT_EQ(mFrame->mStateListenerMap.count(item), 1u);
        handle->DeleteItem();
        EXPECT_NE(elm_naviframe_top_item_get(mFrame->mNaviFrame), item);
        EXPECT_EQ(mFrame->mStateListenerMap.count(item), 0u);
    }

    using BaseViewFixture::Content;
    using BaseViewFixture::EndTransition;
    using BaseViewFixture::mController;
    using BaseViewFixture::mFrame;
    using BaseViewFixture::Push;
    using BaseViewFixture::PushAnimated;

    FakeStateListener mBottomListener{"bottom"};
    FakeStateListener mMiddleListener{"middle"};
    FakeStateListener mTopListener{"top"};
    FakeStateListener mPushedListener{"pushed"};
    FakeTransitionListener mTransition;
    FakeLowerListener mLower;
    std::unique_ptr<FakeView> mView;
    std::shared_ptr<QivoUi::NaviFrameItemPopHandler> mBottom;
    std::shared_ptr<QivoUi::NaviFrameItemPopHandler> mMiddle;
    std::shared_ptr<QivoUi::NaviFrameItemPopHandler> mTop;
};

using Test = NestingMatrixTest;
using Reaction = std::function<void()>;

const Occasion kOccasions[] = {
    {"Covered",
     [](Test& t, const Reaction& deed)
     {
         t.mTopListener.mReactions["OnItemPause"] = deed;
         t.PushAnimated(&t.mPushedListener);
     }},
    {"ResumedByItsPush",
     [](Test& t, const Reaction& deed)
     {
         t.mPushedListener.mReactions["OnItemResume"] = deed;
         t.PushAnimated(&t.mPushedListener);
     }},
    {"ResumedByADeletion",
     [](Test& t, const Reaction& deed)
     {
         t.mTopListener.mReactions["OnItemResume"] = deed;
         t.mMiddle->DeleteItem();
     }},
    {"ResumedByAPop",
     [](Test& t, const Reaction& deed)
     {
         t.mMiddleListener.mReactions["OnItemResume"] = deed;
         t.PopAndEnd();
     }},
    {"TransitionFinished",
     [](Test& t, const Reaction& deed)
     {
         t.PushAnimated(&t.mPushedListener);
         t.mPushedListener.mReactions["OnItemTransitionFinished"] = deed;
         t.EndTransition();
     }},
    {"PopFinished",
     [](Test& t, const Reaction& deed)
     {
         t.mTransition.mReactions["OnPopTransitionFinished"] = deed;
         t.mTop->Pop(true, &t.mTransition);
         t.EndTransition();
     }},
    {"AskedAndConsents",
     [](Test& t, const Reaction& deed)
     {
         t.mController.mReactions["OnViewPopEvent"] = deed;
         t.mTop->Pop(true, nullptr);
     }},
    {"AskedAndRefuses",
     [](Test& t, const Reaction& deed)
     {
         t.mController.mIsAllowed = false;
         t.mController.mReactions["OnViewPopEvent"] = deed;
         t.mTop->Pop(true, nullptr);
     }},
    {"BackKey",
     [](Test& t, const Reaction& deed)
     {
         t.mController.mReactions["OnViewBackEvent"] = deed;
         Platform::PressBack(t.Content());
     }},
    {"DeletedAtOnce",
     [](Test& t, const Reaction& deed)
     {
         t.mController.mReactions["OnViewDeleteEvent"] = deed;
         t.mTop->DeleteItem();
     }},
    {"DeletedByAPop",
     [](Test& t, const Reaction& deed)
     {
         t.mController.mReactions["OnViewDeleteEvent"] = deed;
         t.PopAndEnd();
     }},
    {"WindowLowered",
     [](Test& t, const Reaction& deed)
     {
         t.mBottom->DeleteAboveNaviFrameItem();
         t.mFrame->mNaviFrmaeLowerEventListener = &t.mLower;
         t.mLower.mReactions["OnNaviFrameLowered"] = deed;
         t.mBottom->Pop(true, nullptr);
     }},
    {"ApplicationPaused",
     [](Test& t, const Reaction& deed)
     {
         t.mTopListener.mReactions["OnItemPause"] = deed;
         t.mFrame->OnAppPause();
     }},
    {"ApplicationResumed",
     [](Test& t, const Reaction& deed)
     {
         t.mTopListener.mReactions["OnItemResume"] = deed;
         t.mFrame->OnAppResume();
     }},
};

Elm_Object_Item* Top(Test& t)
{
    return elm_naviframe_top_item_get(t.mFrame->mNaviFrame);
}

const Deed kDeeds[] = {
    {"Push", [](Test& t) { t.PushAnimated(); }},
    {"Insert", [](Test& t) { t.Push(); }},
    {"Pop", [](Test& t) { t.mFrame->PopItem(Top(t), true, &t.mTransition); }},
    {"PopAtOnce", [](Test& t) { t.mFrame->PopItem(Top(t), false, nullptr); }},
    {"PopTo", [](Test& t) { t.mBottom->PopTo(); }},
    {"DeleteTheTop", [](Test& t) { t.mFrame->DeleteTopItem(); }},
    {"DeleteTheView", [](Test& t) { t.mTop->DeleteItem(); }},
    {"DeleteTheOneBelow", [](Test& t) { t.mMiddle->DeleteItem(); }},
    {"DeleteAbove", [](Test& t) { t.mBottom->DeleteAboveNaviFrameItem(); }},
    {"DeleteBetween", [](Test& t) { t.mTop->DeleteBetweenNaviFrameItem(t.mBottom); }},
    {"DeleteAll",
     [](Test& t)
     {
         t.mBottom->DeleteAboveNaviFrameItem();
         t.mBottom->DeleteItem();
     }},
    {"DeleteTheLayout", [](Test& t) { evas_object_del(t.Content()); }},
    {"PauseTheApplication", [](Test& t) { t.mFrame->OnAppPause(); }},
    {"ResumeTheApplication", [](Test& t) { t.mFrame->OnAppResume(); }},
};

using Case = std::tuple<Occasion, Deed>;

std::string NameOf(const Case& nested)
{
    return std::string(std::get<0>(nested).name) + "_" + std::get<1>(nested).name;
}

// All but what the headers forbid: who consents to a pop must not delete the screen meanwhile, and
// who hears that a screen is being deleted must not delete it again.
std::vector<Case> Cases()
{
    static const std::set<std::string> kForbidden = {
        "AskedAndConsents_PopAtOnce",     "AskedAndConsents_DeleteTheTop",
        "AskedAndConsents_DeleteTheView", "AskedAndConsents_DeleteAbove",
        "AskedAndConsents_DeleteAll",     "DeletedAtOnce_DeleteTheView",
    };
    std::vector<Case> cases;
    for (const Occasion& occasion : kOccasions)
    {
        for (const Deed& deed : kDeeds)
        {
            if (kForbidden.count(NameOf({occasion, deed})) == 0)
            {
                cases.emplace_back(occasion, deed);
            }
        }
    }
    return cases;
}

TEST_P(NestingMatrixTest, LeavesTheStackAtWork)
{
    const auto& [occasion, deed] = GetParam();
    bool isDone = false;

    occasion.bring(*this,
                   [&, run = deed.run]
                   {
                       run(*this);
                       isDone = true;
                   });

    EXPECT_TRUE(isDone);
    EndTransition();
    EXPECT_EQ(mFrame->mPopTransitionEventListener, nullptr);
    ExpectWork();
}

INSTANTIATE_TEST_SUITE_P(InACallback, NestingMatrixTest, testing::ValuesIn(Cases()),
                         [](const testing::TestParamInfo<Case>& info)
                         { return NameOf(info.param); });

} // namespace
