#include "ClassLayout.h"

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
#include "qivo-ui-guide/GuideApplication.h"
#include "qivo-ui-guide/GuideView.h"
#include "qivo-ui-guide/GuideViewController.h"

using namespace QivoUi;
using namespace ClassLayout;

namespace
{

using RotaryEventData = RotaryEventManager::RotaryEventData;

TEST(ClassLayoutTest, Application)
{
    using C = Application;
    static_assert(std::is_abstract_v<C>);
    ExpectSlots<C>({
        Slot<C>(&C::OnSetupLayout),
        Slot<C>(&C::OnAppCreateImpl),
        Slot<C>(&C::OnAppSystemLangChangedImpl),
        Slot<C>(&C::OnAppTerminateImpl),
        Slot<C>(&C::OnAppPauseImpl),
        Slot<C>(&C::OnAppResumeImpl),
        Slot<C>(&C::OnAppPausedByPowerKey),
        Slot<C>(&C::AppControllOperationImpl),
        Slot<C>(&C::OnVocraOperation),
        Slot<C>(&C::GetFontTablePath),
        Slot<C>(&C::GetColorTablePath),
        Slot<C>(&C::ShowView),
    });
    ExpectFields<C>(kNoBase, {
                                 Place<C, bool>(&C::mResumeFlag),
                                 Place<C, ExtraDataMapPtr>(&C::mLaunchExtraData),
                                 Place<C, std::string>(&C::mOperation),
                                 Place<C, ExtraDataMapPtr>(&C::mOperationExtraData),
                                 Place<C, std::list<AppEventListener*>>(&C::mAppEventListenerList),
                                 Place<C, int>(&C::mAppState),
                                 Place<C, Ecore_Event_Handler*>(&C::mPowerKeyHandler),
                                 Place<C, Ecore_Event_Handler*>(&C::mExtraKeyHandler),
                                 Place<C, bool>(&C::mIsPowerKeyReleased),
                                 Place<C, Evas_Object*>(&C::mMainLayout),
                                 Place<C, Evas_Object*>(&C::mBackGround),
                                 Place<C, Evas_Object*>(&C::mAppConformant),
                                 Place<C, uxt_theme_color_table_h>(&C::mColorTable),
                                 Place<C, uxt_theme_font_table_h>(&C::mFontTable),
                             });
    static_assert(std::is_same_v<decltype(&C::mWindow), Evas_Object**>, "one for all");
}

TEST(ClassLayoutTest, GuideApplication)
{
    using C = GuideApplication;
    using Base = Application;
    static_assert(std::is_base_of_v<Base, C> && !std::is_abstract_v<C>);
    ExpectSlots<C>({
        Slot<Base>(&C::OnSetupLayout),
        Slot<C>(&C::OnAppCreateImpl),
        Slot<Base>(&C::OnAppSystemLangChangedImpl),
        Slot<C>(&C::OnAppTerminateImpl),
        Slot<C>(&C::OnAppPauseImpl),
        Slot<C>(&C::OnAppResumeImpl),
        Slot<C>(&C::OnAppPausedByPowerKey),
        Slot<C>(&C::AppControllOperationImpl),
        Slot<Base>(&C::OnVocraOperation),
        Slot<Base>(&C::GetFontTablePath),
        Slot<Base>(&C::GetColorTablePath),
        Slot<C>(&C::ShowView),
    });
    ExpectFields<C>(sizeof(Base),
                    {Place<C, std::shared_ptr<GuideViewController>>(&C::mGuideViewController)});
}

TEST(ClassLayoutTest, AppEventListener)
{
    using C = AppEventListener;
    static_assert(!std::is_abstract_v<C>);
    ExpectSlots<C>({
        Slot<C>(&C::OnAppCreate),
        Slot<C>(&C::OnAppTerminate),
        Slot<C>(&C::OnAppPause),
        Slot<C>(&C::OnAppResume),
        Slot<C>(&C::OnSystemLangChanged),
    });
    ExpectFields<C>(kNoBase, {});
}

TEST(ClassLayoutTest, NaviFrame)
{
    using C = NaviFrame;
    using Base = AppEventListener;
    ExpectSlots<C>({
        Slot<Base>(&C::OnAppCreate),
        Slot<Base>(&C::OnAppTerminate),
        Slot<C>(&C::OnAppPause),
        Slot<C>(&C::OnAppResume),
        Slot<Base>(&C::OnSystemLangChanged),
    });
    using StateListeners = std::map<Elm_Object_Item*, NaviFrameStateListener*>;
    ExpectFields<C>(
        sizeof(Base),
        {
            Place<C, Evas_Object*>(&C::mNaviFrame),
            Place<C, Evas_Object*>(&C::mWindow),
            Place<C, bool>(&C::mIsPaused),
            Place<C, StateListeners>(&C::mStateListenerMap),
            Place<C, NaviFrameLowerEventListener*>(&C::mNaviFrmaeLowerEventListener),
            Place<C, NaviFramePopTransitionEventListener*>(&C::mPopTransitionEventListener),
        });
    static_assert(std::is_same_v<decltype(&C::mInstance), C**>, "one for all");
    static_assert(std::is_same_v<decltype(&C::mIsAlive), bool*>, "one for all");
}

TEST(ClassLayoutTest, NaviFrameItemData)
{
    using C = NaviFrameItemData;
    ExpectSlots<C>({});
    ExpectFields<C>(kNoBase, {
                                 Place<C, Evas_Object*>(&C::mViewLayout),
                                 Place<C, void*>(&C::mReserved),
                                 Place<C, std::string>(&C::mTitle),
                                 Place<C, NaviFrameStateListener*>(&C::mStateListener),
                             });
}

TEST(ClassLayoutTest, NaviFrameItemPopHandler)
{
    using C = NaviFrameItemPopHandler;
    ExpectSlots<C>({});
    ExpectFields<C>(kNoBase, {
                                 Place<C, Elm_Object_Item*>(&C::mNaviFrameItem),
                                 Place<C, NaviFramePopEventListener*>(&C::mPopEventListener),
                             });
}

TEST(ClassLayoutTest, NaviFrameListeners)
{
    static_assert(std::is_abstract_v<NaviFramePopEventListener>);
    static_assert(std::is_abstract_v<NaviFrameStateListener>);
    static_assert(std::is_abstract_v<NaviFrameLowerEventListener>);
    static_assert(std::is_abstract_v<NaviFramePopTransitionEventListener>);
    ExpectSlots<NaviFramePopEventListener>(
        {Slot<NaviFramePopEventListener, bool>(&NaviFramePopEventListener::OnViewPoped)});
    ExpectSlots<NaviFrameStateListener>({
        Slot<NaviFrameStateListener, void>(&NaviFrameStateListener::OnItemResume),
        Slot<NaviFrameStateListener, void>(&NaviFrameStateListener::OnItemPause),
        Slot<NaviFrameStateListener, void>(&NaviFrameStateListener::OnItemTransitionFinished),
    });
    ExpectSlots<NaviFrameLowerEventListener>({Slot<NaviFrameLowerEventListener, void>(
        &NaviFrameLowerEventListener::OnNaviFrameLowered)});
    ExpectSlots<NaviFramePopTransitionEventListener>(
        {Slot<NaviFramePopTransitionEventListener, void>(
            &NaviFramePopTransitionEventListener::OnPopTransitionFinished)});
}

TEST(ClassLayoutTest, BaseView)
{
    using C = BaseView;
    static_assert(std::is_abstract_v<C>);
    ExpectSlots<C>({
        Slot<C>(&C::OnViewPoped),
        Slot<C>(&C::Show),
        Slot<C>(&C::CreateViewImpl),
        Slot<C>(&C::OnLanguageChanged),
        Slot<C>(&C::OnThemeChanged),
        Slot<C>(&C::OnLayoutDeleted),
    });
    ExpectFields<C>(sizeof(NaviFramePopEventListener),
                    {
                        Place<C, std::shared_ptr<NaviFrameItemData>>(&C::mNaviFramItemDataPtr),
                        Place<C, BaseViewEventListener*>(&C::mViewEventListener),
                        Place<C, Evas_Object*>(&C::mLayout),
                    });
}

TEST(ClassLayoutTest, BaseViewEventListener)
{
    using C = BaseViewEventListener;
    static_assert(std::is_abstract_v<C>);
    ExpectSlots<C>({
        Slot<C>(&C::OnViewBackEvent),
        Slot<C>(&C::OnViewPopEvent),
        Slot<C>(&C::OnViewDeleteEvent),
    });
}

TEST(ClassLayoutTest, BaseViewController)
{
    using C = BaseViewController;
    static_assert(std::is_abstract_v<C>);
    ExpectSlots<C>({
        Slot<C>(&C::OnViewBackEvent),
        Slot<C>(&C::OnViewPopEvent),
        Slot<C>(&C::OnViewDeleteEvent),
        Slot<C>(&C::Initialize),
        Slot<C>(&C::DeInitialize),
        Slot<C>(&C::ShowView),
    });
    ExpectFields<C>(sizeof(BaseViewEventListener),
                    {
                        Place<C, std::shared_ptr<BaseView>>(&C::mBaseViewPtr),
                        Place<C, std::shared_ptr<NaviFrameItemPopHandler>>(&C::mPopHandlerPtr),
                    });
}

TEST(ClassLayoutTest, GuideView)
{
    using C = GuideView;
    using Base = BaseView;
    static_assert(std::is_base_of_v<Base, C> && !std::is_abstract_v<C>);
    ExpectSlots<C>({
        Slot<Base>(&C::OnViewPoped),
        Slot<Base>(&C::Show),
        Slot<C>(&C::CreateViewImpl),
        Slot<C>(&C::OnLanguageChanged),
        Slot<Base>(&C::OnThemeChanged),
        Slot<Base>(&C::OnLayoutDeleted),
    });
    ExpectFields<C>(sizeof(Base), {
                                      Place<C, Evas_Object*>(&C::mGuideLayout),
                                      Place<C, Evas_Object*>(&C::mScroller),
                                      Place<C, Evas_Object*>(&C::mBox),
                                      Place<C, bool>(&C::mIsArrowVisible),
                                  });
}

TEST(ClassLayoutTest, GuideViewController)
{
    using C = GuideViewController;
    using Base = BaseViewController;
    static_assert(std::is_base_of_v<Base, C> && !std::is_abstract_v<C>);
    ExpectSlots<C>({
        Slot<Base>(&C::OnViewBackEvent),
        Slot<Base>(&C::OnViewPopEvent),
        Slot<Base>(&C::OnViewDeleteEvent),
        Slot<C>(&C::Initialize),
        Slot<C>(&C::DeInitialize),
        Slot<Base>(&C::ShowView),
    });
    ExpectFields<C>(sizeof(Base), {Place<C, std::shared_ptr<GuideView>>(&C::mGuideViewPtr)});
}

TEST(ClassLayoutTest, RotaryEventManager)
{
    using C = RotaryEventManager;
    ExpectSlots<C>({});
    using Records = std::list<std::shared_ptr<RotaryEventData>>;
    ExpectFields<C>(kNoBase, {
                                 Place<C, Records>(&C::mRotaryEventDataList),
                                 Place<C, std::list<RotaryEventData*>>(&C::mSpareList),
                             });
    static_assert(std::is_same_v<decltype(&C::mPThis), C**>, "one for all");
    static_assert(std::is_same_v<decltype(&C::mConformant), Evas_Object**>, "one for all");
    static_assert(std::is_same_v<decltype(&C::mCircleSurface), Eext_Circle_Surface**>,
                  "one for all");
}

TEST(ClassLayoutTest, RotaryEventData)
{
    using C = RotaryEventData;
    ExpectSlots<C>({});
    ExpectFields<C>(kNoBase, {
                                 Place<C, Evas_Object*>(&C::mViewObject),
                                 Place<C, RotaryEventListener*>(&C::mEventListener),
                             });
}

TEST(ClassLayoutTest, RotaryEventListener)
{
    using C = RotaryEventListener;
    static_assert(std::is_abstract_v<C>);
    ExpectSlots<C>({
        Slot<C>(&C::GetRotaryViewObject),
        Slot<C>(&C::OnRotaryEvent),
        Slot<C>(&C::OnRotaryDetent),
    });
    ExpectFields<C>(kNoBase, {});
}

template <typename C> void ExpectNothingButADestructor()
{
    static_assert(std::is_default_constructible_v<C>);
    ExpectSlots<C>({});
    ExpectFields<C>(kNoBase, {});
}

TEST(ClassLayoutTest, Utilities)
{
    ExpectNothingButADestructor<AppControllUtil>();
    ExpectNothingButADestructor<CommonUtil>();
    ExpectNothingButADestructor<ImageUtil>();
    ExpectNothingButADestructor<StringUtil>();
}

} // namespace
