// That the compiler makes of the classes what their headers say (interface.txt): how many virtual
// operations each has, where its last one stands, and that its size is that of its fields.

#include "common/AppEventListener.h"
#include "common/BaseView.h"
#include "common/BaseViewController.h"
#include "common/NaviFrame.h"
#include "common/NaviFrameItemData.h"
#include "common/NaviFrameItemPopHandler.h"
#include "common/RotaryEventManager.h"
#include "common/util/CommonUtil.h"
#include "common/util/ImageUtil.h"
#include "common/util/StringUtil.h"
#include "harness/Recorder.h"
#include "qivo-ui-guide/GuideApplication.h"
#include "qivo-ui-guide/GuideView.h"
#include "qivo-ui-guide/GuideViewController.h"

#include <cstring>
#include <gtest/gtest.h>

using namespace QivoUi;

namespace
{

// A pointer to a virtual operation tells its slot in the C++ ABI of Linux.
template <typename C, typename R, typename... A> std::size_t Slot(R (C::*operation)(A...))
{
    constexpr std::uintptr_t kVirtualBit = 1;
    std::uintptr_t word = 0;
    std::memcpy(&word, &operation, sizeof(word));
    return (word & ~kVirtualBit) / sizeof(void*);
}

template <typename C> struct Extended : C
{
    virtual void AfterTheLast();
};

// The destructor has the first two slots.
template <typename C> std::size_t CountOperations()
{
    return Slot<Extended<C>>(&Extended<C>::AfterTheLast) - 2;
}

// A class with a table and nothing else.
using Table = AppEventListener;

template <typename Base, typename... Fields> constexpr std::size_t SizeWith()
{
    std::size_t size = sizeof(Base);
    const auto align = [&size](std::size_t alignment)
    { size = (size + alignment - 1) / alignment * alignment; };
    ((align(alignof(Fields)), size += sizeof(Fields)), ...);
    align(alignof(Base));
    return size;
}

TEST(ClassLayoutTest, Application)
{
    EXPECT_EQ(CountOperations<Application>(), 12U);
    EXPECT_EQ(Slot(&Application::ShowView), 13U);
    EXPECT_EQ(sizeof(Application),
              (SizeWith<Table, bool, ExtraDataMapPtr, std::string, ExtraDataMapPtr,
                        std::list<AppEventListener*>, int, void*, void*, bool, void*, void*, void*,
                        void*, void*>()));
}

TEST(ClassLayoutTest, GuideApplication)
{
    EXPECT_EQ(CountOperations<GuideApplication>(), 12U);
    EXPECT_EQ(sizeof(GuideApplication),
              (SizeWith<Application, std::shared_ptr<GuideViewController>>()));
}

TEST(ClassLayoutTest, AppEventListener)
{
    EXPECT_EQ(CountOperations<AppEventListener>(), 5U);
    EXPECT_EQ(Slot(&AppEventListener::OnSystemLangChanged), 6U);
    EXPECT_EQ(sizeof(AppEventListener), sizeof(void*));
}

TEST(ClassLayoutTest, NaviFrame)
{
    EXPECT_EQ(CountOperations<NaviFrame>(), 5U);
    EXPECT_EQ(sizeof(NaviFrame),
              (SizeWith<AppEventListener, void*, void*, bool,
                        std::map<Elm_Object_Item*, NaviFrameStateListener*>, void*, void*>()));
}

TEST(ClassLayoutTest, NaviFrameItemData)
{
    EXPECT_EQ(CountOperations<NaviFrameItemData>(), 0U);
    EXPECT_EQ(sizeof(NaviFrameItemData), (SizeWith<Table, void*, void*, std::string, void*>()));
}

TEST(ClassLayoutTest, NaviFrameItemPopHandler)
{
    EXPECT_EQ(CountOperations<NaviFrameItemPopHandler>(), 0U);
    EXPECT_EQ(sizeof(NaviFrameItemPopHandler), (SizeWith<Table, void*, void*>()));
}

TEST(ClassLayoutTest, NaviFrameListeners)
{
    EXPECT_EQ(CountOperations<NaviFramePopEventListener>(), 1U);
    EXPECT_EQ(CountOperations<NaviFrameStateListener>(), 3U);
    EXPECT_EQ(Slot(&NaviFrameStateListener::OnItemTransitionFinished), 4U);
    EXPECT_EQ(CountOperations<NaviFrameLowerEventListener>(), 1U);
    EXPECT_EQ(CountOperations<NaviFramePopTransitionEventListener>(), 1U);
}

TEST(ClassLayoutTest, BaseView)
{
    EXPECT_EQ(CountOperations<BaseView>(), 6U);
    EXPECT_EQ(Slot(&BaseView::OnLayoutDeleted), 7U);
    EXPECT_EQ(
        sizeof(BaseView),
        (SizeWith<NaviFramePopEventListener, std::shared_ptr<NaviFrameItemData>, void*, void*>()));
}

TEST(ClassLayoutTest, BaseViewController)
{
    EXPECT_EQ(CountOperations<BaseViewEventListener>(), 3U);
    EXPECT_EQ(Slot(&BaseViewEventListener::OnViewDeleteEvent), 4U);
    EXPECT_EQ(CountOperations<BaseViewController>(), 6U);
    EXPECT_EQ(Slot(&BaseViewController::ShowView), 7U);
    EXPECT_EQ(sizeof(BaseViewController),
              (SizeWith<BaseViewEventListener, std::shared_ptr<BaseView>,
                        std::shared_ptr<NaviFrameItemPopHandler>>()));
}

TEST(ClassLayoutTest, GuideView)
{
    EXPECT_EQ(CountOperations<GuideView>(), 6U);
    EXPECT_EQ(sizeof(GuideView), (SizeWith<BaseView, void*, void*, void*, bool>()));
}

TEST(ClassLayoutTest, GuideViewController)
{
    EXPECT_EQ(CountOperations<GuideViewController>(), 6U);
    EXPECT_EQ(sizeof(GuideViewController),
              (SizeWith<BaseViewController, std::shared_ptr<GuideView>>()));
}

TEST(ClassLayoutTest, RotaryEventManager)
{
    using Record = RotaryEventManager::RotaryEventData;
    EXPECT_EQ(CountOperations<RotaryEventManager>(), 0U);
    EXPECT_EQ(sizeof(RotaryEventManager),
              (SizeWith<Table, std::list<std::shared_ptr<Record>>, std::list<Record*>>()));
    EXPECT_EQ(CountOperations<Record>(), 0U);
    EXPECT_EQ(sizeof(Record), (SizeWith<Table, void*, void*>()));
    EXPECT_EQ(CountOperations<RotaryEventListener>(), 3U);
    EXPECT_EQ(Slot(&RotaryEventListener::OnRotaryDetent), 4U);
}

template <typename C> void ExpectNothingButADestructor()
{
    EXPECT_EQ(CountOperations<C>(), 0U);
    EXPECT_EQ(sizeof(C), sizeof(void*));
}

TEST(ClassLayoutTest, Utilities)
{
    ExpectNothingButADestructor<AppControllUtil>();
    ExpectNothingButADestructor<CommonUtil>();
    ExpectNothingButADestructor<ImageUtil>();
    ExpectNothingButADestructor<StringUtil>();
}

struct ViewEventListener : BaseViewEventListener
{
    void OnViewBackEvent() override {}
    bool OnViewPopEvent() override { return true; }
};

TEST(BaseViewEventListenerTest, NeedNotHearOfTheDeletionOfAView)
{
    Recorder::Reset();
    ViewEventListener listener;

    listener.OnViewDeleteEvent();

    EXPECT_EQ(Recorder::Take(), Recorder::Lines());
}

} // namespace
