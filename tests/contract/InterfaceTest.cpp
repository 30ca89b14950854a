// Which operations a listener or a derived class has to bring itself: a class that brings all of
// them but one stays abstract.

#include "common/BaseViewController.h"
#include "common/BaseViewEventListener.h"
#include "common/NaviFrameStateListener.h"
#include "harness/Recorder.h"
#include <gtest/gtest.h>
#include <type_traits>

using namespace QivoUi;

namespace
{

struct NoResume : NaviFrameStateListener
{
    void OnItemPause() override {}
    void OnItemTransitionFinished() override {}
};
static_assert(std::is_abstract_v<NoResume>);

struct NoPause : NaviFrameStateListener
{
    void OnItemResume() override {}
    void OnItemTransitionFinished() override {}
};
static_assert(std::is_abstract_v<NoPause>);

struct NoTransition : NaviFrameStateListener
{
    void OnItemResume() override {}
    void OnItemPause() override {}
};
static_assert(std::is_abstract_v<NoTransition>);

struct NoBackEvent : BaseViewEventListener
{
    bool OnViewPopEvent() override { return true; }
};
static_assert(std::is_abstract_v<NoBackEvent>);

struct NoPopEvent : BaseViewEventListener
{
    void OnViewBackEvent() override {}
};
static_assert(std::is_abstract_v<NoPopEvent>);

struct NoInitialize : BaseViewController
{
    void DeInitialize() override {}
};
static_assert(std::is_abstract_v<NoInitialize>);

struct NoDeInitialize : BaseViewController
{
    void Initialize() override {}
};
static_assert(std::is_abstract_v<NoDeInitialize>);

struct ViewEventListener : BaseViewEventListener
{
    void OnViewBackEvent() override {}
    bool OnViewPopEvent() override { return true; }
};

TEST(InterfaceTest, NeedNotHearOfTheDeletionOfAView)
{
    Recorder::Reset();
    ViewEventListener listener;

    listener.OnViewDeleteEvent();

    EXPECT_EQ(Recorder::Take(), Recorder::Lines());
}

} // namespace
