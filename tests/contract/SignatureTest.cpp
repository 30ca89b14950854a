// What each class offers to everybody, with the kinds of its arguments and results. This file is
// built like any user of the classes, without a look at what they hide; it holds when it compiles.

#include "common/AppEventListener.h"
#include "common/BaseView.h"
#include "common/BaseViewController.h"
#include "common/NaviFrame.h"
#include "common/NaviFrameItemData.h"
#include "common/NaviFrameItemPopHandler.h"
#include "common/NaviFrameLowerEventListener.h"
#include "common/NaviFramePopTransitionEventListener.h"
#include "common/NaviFrameStateListener.h"
#include "common/RotaryEventManager.h"
#include "common/util/AppControllUtil.h"
#include "common/util/CommonUtil.h"
#include "common/util/ImageUtil.h"
#include "common/util/StringUtil.h"
#include "qivo-ui-guide/GuideApplication.h"
#include "qivo-ui-guide/GuideView.h"
#include "qivo-ui-guide/GuideViewController.h"
#include <map>
#include <type_traits>

using namespace QivoUi;

namespace
{

using std::string;
using Handle = std::shared_ptr<NaviFrameItemPopHandler>;
using ItemData = std::shared_ptr<NaviFrameItemData>;
using Record = std::shared_ptr<RotaryEventManager::RotaryEventData>;

/** An operation of an object, exactly of this kind. */
template <typename C, typename R, typename... A> constexpr bool Member(R (C::*)(A...))
{
    return true;
}

/** An operation without an object, exactly of this kind. */
template <typename R, typename... A> constexpr bool Static(R (*)(A...))
{
    return true;
}

template <typename Base, typename C> constexpr bool IsPublicBase()
{
    return std::is_convertible_v<C*, Base*>;
}

static_assert(IsPublicBase<AppEventListener, NaviFrame>());
static_assert(IsPublicBase<NaviFramePopEventListener, BaseView>());
static_assert(IsPublicBase<BaseViewEventListener, BaseViewController>());
static_assert(IsPublicBase<BaseView, GuideView>());
static_assert(IsPublicBase<BaseViewController, GuideViewController>());
static_assert(IsPublicBase<Application, GuideApplication>());

static_assert(Member<AppEventListener, void>(&AppEventListener::OnAppCreate));
static_assert(Member<AppEventListener, void>(&AppEventListener::OnAppTerminate));
static_assert(Member<AppEventListener, void>(&AppEventListener::OnAppPause));
static_assert(Member<AppEventListener, void>(&AppEventListener::OnAppResume));
static_assert(Member<AppEventListener, void>(&AppEventListener::OnSystemLangChanged));

static_assert(std::is_same_v<ExtraDataMapPtr, std::shared_ptr<std::map<string, string>>>);

using A = Application;
static_assert(Static<bool, void*>(&A::SOnAppCreate));
static_assert(Static<void, void*>(&A::SOnAppTerminate));
static_assert(Static<void, void*>(&A::SOnAppPause));
static_assert(Static<void, void*>(&A::SOnAppResume));
static_assert(Static<void, app_control_h, void*>(&A::SOnAppControl));
static_assert(Static<void>(&A::SOnOutOfMemory));
static_assert(Static<void, system_settings_key_e, void*>(&A::SOnLanguageChanged));
static_assert(Static<void, system_settings_key_e, void*>(&A::SOnRegionChanged));
static_assert(Static<void, system_settings_key_e, void*>(&A::SOnSystemTimeChanged));
static_assert(Static<void, system_settings_key_e, void*>(&A::SOnDateAndTImeFormatChanged));
static_assert(Static<string>(&A::GetCurrentLocale));
static_assert(Static<void, void*>(&A::AppSystemLangChanged));
static_assert(Static<Eina_Bool, void*, int, void*>(&A::OnKeyReleasedCB));
static_assert(Member<A, bool>(&A::OnSetupLayout));
static_assert(Member<A, void>(&A::OnAppCreateImpl));
static_assert(Member<A, void>(&A::OnAppSystemLangChangedImpl));
static_assert(Member<A, void>(&A::OnAppTerminateImpl));
static_assert(Member<A, void>(&A::OnAppPauseImpl));
static_assert(Member<A, void>(&A::OnAppResumeImpl));
static_assert(Member<A, void>(&A::OnAppPausedByPowerKey));
static_assert(Member<A, bool, string, ExtraDataMapPtr>(&A::AppControllOperationImpl));
static_assert(Member<A, bool, ExtraDataMapPtr>(&A::OnVocraOperation));
static_assert(Member<A, string>(&A::GetFontTablePath));
static_assert(Member<A, string>(&A::GetColorTablePath));
static_assert(Member<A, bool>(&A::ShowView));
static_assert(Member<A, void>(&A::SetUpAppInfo));
static_assert(Member<A, Evas_Object*>(&A::CreateWindow));
static_assert(Member<A, Evas_Object*, Evas_Object*>(&A::CreateBackGround));
static_assert(Member<A, Evas_Object*, Evas_Object*>(&A::CreateConformant));
static_assert(Member<A, Evas_Object*, Evas_Object*>(&A::CreateMainLayout));
static_assert(Member<A, void>(&A::LoadColorTable));
static_assert(Member<A, void>(&A::RegisterPowerKeyEvent));
static_assert(Member<A, void>(&A::UnRegisterPowerKeyEvent));
static_assert(Member<A, void, AppEventListener*>(&A::RegisterAppEventListener));
static_assert(Member<A, void, AppEventListener*>(&A::UnRegisterAppEventListener));
static_assert(Member<A, void>(&A::NotifyAppPaused));
static_assert(Member<A, void>(&A::NotifyAppResumed));
static_assert(Member<A, void>(&A::NotifyAppTerminate));
static_assert(Member<A, void>(&A::NotifySystemLangChanged));
static_assert(Member<A, void>(&A::NotifyLanguageChanged));
static_assert(Member<A, bool, string, ExtraDataMapPtr>(&A::OnAppControllOperation));
static_assert(Member<A, void, string, ExtraDataMapPtr>(&A::SaveOperation));
static_assert(Member<A, void, ExtraDataMapPtr>(&A::SetLaunchExtraData));
static_assert(Member<A, void, bool>(&A::SetResumeFlag));
static_assert(Member<A, void, app_control_h, bool>(&A::ReplyAppControll));
static_assert(Static<Application*>(&::CreateApplication));
static_assert(Static<Application*>(&QivoUi::CreateApplication));
static_assert(std::is_default_constructible_v<GuideApplication>);

using N = NaviFrame;
static_assert(Static<N*>(&N::GetInstance));
static_assert(Static<void>(&N::Destroy));
static_assert(Member<N, void, Evas_Object*>(&N::SetMainWindow));
static_assert(Member<N, void, Evas_Object*>(&N::CreateNaviFrame));
static_assert(Member<N, Evas_Object*>(&N::GetParent));
static_assert(Member<N, Handle, ItemData, bool>(&N::PushNaviframeItem));
static_assert(
    Member<N, void, Elm_Object_Item*, bool, NaviFramePopTransitionEventListener*>(&N::PopItem));
static_assert(Member<N, void, Elm_Object_Item*>(&N::PopToItem));
static_assert(Member<N, void>(&N::PopTopItem));
static_assert(Member<N, void, Elm_Object_Item*>(&N::DeleteItem));
static_assert(Member<N, void>(&N::DeleteTopItem));
static_assert(Member<N, void, Elm_Object_Item*>(&N::DeleteAboveItems));
static_assert(Member<N, void, Elm_Object_Item*, Elm_Object_Item*>(&N::DeleteBetweenItems));
static_assert(Member<N, Eina_List*, Eina_List*, Eina_List*, Eina_List*>(&N::GetBetweenList));
static_assert(Member<N, bool>(&N::IsNaviFrameEmpty));
static_assert(Member<N, void>(&N::TriggerToAppPaused));
static_assert(Member<N, void, Elm_Object_Item*>(&N::OnNaviImteDeleted));
static_assert(Member<N, void>(&N::OnAppPause));
static_assert(Member<N, void>(&N::OnAppResume));
static_assert(Static<void, void*, Evas_Object*, void*>(&N::SNaviFrameTransitionFinishedCB));
static_assert(Static<void, void*, Evas_Object*, void*>(&N::SNaviFramePopTransitionFinishedCB));
static_assert(
    std::is_same_v<decltype(&N::mNaviFrmaeLowerEventListener), NaviFrameLowerEventListener * N::*>);

using D = NaviFrameItemData;
static_assert(std::is_default_constructible_v<D>);
static_assert(std::is_same_v<decltype(&D::mViewLayout), Evas_Object * D::*>);
static_assert(std::is_same_v<decltype(&D::mTitle), string D::*>);
static_assert(std::is_same_v<decltype(&D::mStateListener), NaviFrameStateListener * D::*>);

using H = NaviFrameItemPopHandler;
static_assert(std::is_default_constructible_v<H>);
static_assert(Member<H, void, Elm_Object_Item*>(&H::SetNaviframeItem));
static_assert(Member<H, void, bool, NaviFramePopTransitionEventListener*>(&H::Pop));
static_assert(Member<H, void>(&H::PopTo));
static_assert(Member<H, void>(&H::DeleteItem));
static_assert(Member<H, void>(&H::DeleteAboveNaviFrameItem));
static_assert(Member<H, void, Handle>(&H::DeleteBetweenNaviFrameItem));
static_assert(Static<Eina_Bool, void*, Elm_Object_Item*>(&H::SNaviFramePopedCB));
static_assert(Static<void, void*, Evas_Object*, void*>(&H::NaviFrameItemDelCB));
static_assert(std::is_same_v<decltype(&H::mPopEventListener), NaviFramePopEventListener * H::*>);

static_assert(Member<NaviFramePopEventListener, bool>(&NaviFramePopEventListener::OnViewPoped));
static_assert(Member<NaviFrameStateListener, void>(&NaviFrameStateListener::OnItemResume));
static_assert(Member<NaviFrameStateListener, void>(&NaviFrameStateListener::OnItemPause));
static_assert(
    Member<NaviFrameStateListener, void>(&NaviFrameStateListener::OnItemTransitionFinished));
static_assert(
    Member<NaviFrameLowerEventListener, void>(&NaviFrameLowerEventListener::OnNaviFrameLowered));
static_assert(Member<NaviFramePopTransitionEventListener, void>(
    &NaviFramePopTransitionEventListener::OnPopTransitionFinished));

/** The framework tells such a listener, and leaves it to other applications to be one. */
template <typename Listener> constexpr bool IsNobodyHere()
{
    return !std::is_base_of_v<Listener, GuideApplication> &&
           !std::is_base_of_v<Listener, GuideView> &&
           !std::is_base_of_v<Listener, GuideViewController> &&
           !std::is_base_of_v<Listener, NaviFrame> &&
           !std::is_base_of_v<Listener, NaviFrameItemPopHandler> &&
           !std::is_base_of_v<Listener, RotaryEventManager>;
}

static_assert(IsNobodyHere<NaviFrameStateListener>());
static_assert(IsNobodyHere<NaviFrameLowerEventListener>());
static_assert(IsNobodyHere<NaviFramePopTransitionEventListener>());
static_assert(IsNobodyHere<RotaryEventListener>());

using V = BaseView;
static_assert(Member<V, void>(&V::CreateView));
static_assert(Member<V, Handle, bool>(&V::Show));
static_assert(Member<V, Evas_Object*>(&V::GetViewLayout));
static_assert(Member<V, ItemData, Evas_Object*>(&V::CreateViewImpl));
static_assert(Member<V, bool>(&V::OnViewPoped));
static_assert(Member<V, void>(&V::OnLanguageChanged));
static_assert(Member<V, void>(&V::OnThemeChanged));
static_assert(Member<V, void>(&V::OnLayoutDeleted));
static_assert(Static<void, void*, Evas_Object*, void*>(&V::SLayoutBackCB));
static_assert(Static<void, void*, Evas*, Evas_Object*, void*>(&V::SViewObjectDeleteCB));
static_assert(Static<void, void*, Evas_Object*, void*>(&V::SLanguageChangedCB));
static_assert(Static<void, void*>(&V::SThemeChangedCB));
static_assert(std::is_same_v<decltype(&V::mViewEventListener), BaseViewEventListener * V::*>);

using E = BaseViewEventListener;
static_assert(Member<E, void>(&E::OnViewBackEvent));
static_assert(Member<E, bool>(&E::OnViewPopEvent));
static_assert(Member<E, void>(&E::OnViewDeleteEvent));

using C = BaseViewController;
static_assert(Member<C, Handle, bool>(&C::ShowView));
static_assert(Member<C, void>(&C::Initialize));
static_assert(Member<C, void>(&C::DeInitialize));
static_assert(Member<C, void>(&C::OnViewBackEvent));
static_assert(Member<C, bool>(&C::OnViewPopEvent));
static_assert(Member<C, void>(&C::OnViewDeleteEvent));

static_assert(std::is_default_constructible_v<GuideView>);
static_assert(Member<GuideView, ItemData, Evas_Object*>(&GuideView::CreateViewImpl));
static_assert(Member<GuideView, Evas_Object*, Evas_Object*>(&GuideView::CreateLayout));
static_assert(Member<GuideView, void, bool>(&GuideView::SetArrowVisible));
static_assert(Member<GuideView, void>(&GuideView::OnLanguageChanged));
static_assert(Static<void, void*, Evas_Object*, void*>(&GuideView::SOnScrollCB));

static_assert(std::is_default_constructible_v<GuideViewController>);
static_assert(Member<GuideViewController, void>(&GuideViewController::Initialize));
static_assert(Member<GuideViewController, void>(&GuideViewController::DeInitialize));
static_assert(
    Static<void, device_callback_e, void*, void*>(&GuideViewController::DeviceChangedCallback));

using R = RotaryEventManager;
static_assert(std::is_default_constructible_v<R::RotaryEventData>);
static_assert(Static<R*>(&R::GetInstance));
static_assert(Static<void>(&R::Destroy));
static_assert(Static<Eext_Circle_Surface*, Evas_Object*>(&R::CreateCircleSurface));
static_assert(Static<Eext_Circle_Surface*>(&R::GetCircleSurface));
static_assert(Member<R, void, RotaryEventListener*>(&R::RegisterEventListener));
static_assert(Member<R, void, RotaryEventListener*>(&R::UnRegisterEventListener));
static_assert(Member<R, void, Evas_Object*>(&R::ActivateRotateElementaryWidget));
static_assert(Member<R, void, Evas_Object*>(&R::DeActivateRotateElementaryWidget));
static_assert(Member<R, void, Evas_Object*>(&R::SetRotaryEventCB));
static_assert(Member<R, void, Evas_Object*>(&R::UnSetRotaryEventCB));
static_assert(Member<R, void, Record>(&R::ActivateRotateEvent));
static_assert(Member<R, void, Record>(&R::DeActivateRotateEvent));
static_assert(Member<R, Record, RotaryEventListener*>(&R::FindRotaryEventData));
static_assert(Member<R, Record, Evas_Object*>(&R::FindRotaryEventData));
static_assert(Static<Eina_Bool, void*, Evas_Object*, Eext_Rotary_Event_Info*>(&R::SRotaryEventCB));
static_assert(Static<void, void*, Evas*, Evas_Object*, void*>(&R::SViewObjectDeleteCB));
static_assert(std::is_same_v<decltype(&R::RotaryEventData::mViewObject),
                             Evas_Object * R::RotaryEventData::*>);
static_assert(std::is_same_v<decltype(&R::RotaryEventData::mEventListener),
                             RotaryEventListener * R::RotaryEventData::*>);

using L = RotaryEventListener;
static_assert(Member<L, Evas_Object*>(&L::GetRotaryViewObject));
static_assert(Member<L, void, int, unsigned>(&L::OnRotaryEvent));
static_assert(Member<L, void, int, unsigned>(&L::OnRotaryDetent));

using U = AppControllUtil;
static_assert(Static<void, string, string>(&U::LaunchApp));
static_assert(Static<void, string, string, ExtraDataMapPtr>(&U::LaucnhAppWithExtraData));
static_assert(Static<void, string, string, ExtraDataMapPtr>(
    &U::LaucnhAppWithExtraDataWhenNotPowerSavingMode));
static_assert(Static<void, app_control_h, bool, ExtraDataMapPtr>(&U::ReplyAppControl));
static_assert(Static<ExtraDataMapPtr, app_control_h>(&U::GetExtraData));
static_assert(Static<bool, app_control_h, const char*, void*>(&U::ForEachExtraData));

static_assert(Static<string, string>(&CommonUtil::GetResourcePath));
static_assert(Static<string, string>(&CommonUtil::GetDataPath));

using Image = Evas_Object*;
static_assert(
    Static<Image, Evas_Object*, string, string, bool, string>(&ImageUtil::MakeImageObject));
static_assert(Static<Image, Evas_Object*, string, string>(&ImageUtil::MakeImageObject));
static_assert(
    Static<Image, Evas_Object*, string, string, string>(&ImageUtil::MakeImageObjectWithEdje));
static_assert(Static<Image, Evas_Object*, string, string>(&ImageUtil::MakeImageObjectFromFile));

using S = StringUtil;
static_assert(Static<string, string, string, string>(&S::StringReplace));
static_assert(
    Static<string, int, int, int, int, int, const string&, string>(&S::GetColorTagedString));
static_assert(Static<int, const string&>(&S::StringToInt));
static_assert(Static<long long, const string&>(&S::StringToInt64));
static_assert(Static<float, const string&>(&S::StringToFloat));
static_assert(Static<double, const string&>(&S::StringToDouble));
static_assert(Static<std::vector<string>, const string&, const string&>(&S::Tokenize));
static_assert(Static<string, int>(&S::IntToHexaStringBy8Bit));
static_assert(Static<string, int>(&S::IntToString));
static_assert(Static<string, long long>(&S::Int64ToString));
static_assert(Static<string, float>(&S::FloatToString));
static_assert(Static<string, float, int>(&S::RoundOff));
static_assert(Static<string, double, int>(&S::DoubleToString));

} // namespace
