#include "qivo-ui-guide/Application.h"

#include "common/Log.h"
#include "common/NaviFrame.h"
#include "common/util/CommonUtil.h"
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace QivoUi
{

namespace
{

// Deliberately for the life of the process and never reset: one launch, one screen.
bool sIsAppControlHandled = false;

} // namespace

Evas_Object* Application::mWindow = nullptr;

Application::Application()
{
    // Deliberate: each construction forgets the window of an earlier one.
    mWindow = nullptr;
}

void Application::OnAppCreateImpl()
{
    SetUpAppInfo();
    mWindow = CreateWindow();
    if (!mWindow)
    {
        QIVO_LOG_ERROR("[Failed] Create Window");
        return;
    }
    LoadColorTable();
}

void Application::SetUpAppInfo()
{
    const std::string path = CommonUtil::GetResourcePath("edje/qivoui.edj");
    elm_theme_extension_add(nullptr, path.c_str());
    elm_app_base_scale_set(1.3);
}

Evas_Object* Application::CreateWindow()
{
    Evas_Object* window = elm_win_add(nullptr, "qivo-guide-app", ELM_WIN_BASIC);
    if (!window)
    {
        QIVO_LOG_ERROR("elm_win_add");
        return nullptr;
    }
    elm_win_title_set(window, "qivo-guide-app");
    elm_win_autodel_set(window, EINA_TRUE);
    evas_object_show(window);
    elm_win_indicator_mode_set(window, ELM_WIN_INDICATOR_HIDE);
    return window;
}

void Application::LoadColorTable()
{
    uxt_theme_set_changeable_ui_enabled(EINA_TRUE);
    auto* color = uxt_theme_add_color_table(GetColorTablePath().c_str());
    uxt_theme_set_color_table(color);
    auto* font = uxt_theme_add_font_table(GetFontTablePath().c_str());
    uxt_theme_set_font_table(font);
    mColorTable = color;
    mFontTable = font;
}

std::string Application::GetFontTablePath()
{
    return CommonUtil::GetResourcePath("tables/com.velmora.qivo-app_FontInfoTable.xml");
}

std::string Application::GetColorTablePath()
{
    return CommonUtil::GetResourcePath("tables/com.velmora.qivo-app_ChangeableColorTable.xml");
}

bool Application::OnSetupLayout()
{
    mBackGround = CreateBackGround(mWindow);
    if (!mBackGround)
    {
        QIVO_LOG_ERROR("[Failed] Create BackGround");
        return false;
    }
    mAppConformant = CreateConformant(mWindow);
    mMainLayout = CreateMainLayout(mAppConformant);
    if (!mMainLayout)
    {
        QIVO_LOG_ERROR("[Failed] Create Main Layout");
        return false;
    }

    NaviFrame* naviFrame = NaviFrame::GetInstance();
    naviFrame->SetMainWindow(mWindow);
    naviFrame->CreateNaviFrame(mMainLayout);
    // Null unless the derived application listens.
    naviFrame->mNaviFrmaeLowerEventListener = dynamic_cast<NaviFrameLowerEventListener*>(this);
    RegisterAppEventListener(naviFrame);
    return ShowView();
}

Evas_Object* Application::CreateBackGround(Evas_Object* window)
{
    Evas_Object* background = elm_bg_add(window);
    evas_object_size_hint_weight_set(background, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_win_resize_object_add(window, background);
    evas_object_show(background);
    return background;
}

Evas_Object* Application::CreateConformant(Evas_Object* window)
{
    Evas_Object* conformant = elm_conformant_add(window);
    evas_object_size_hint_weight_set(conformant, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_win_resize_object_add(window, conformant);
    evas_object_show(conformant);
    // Deliberately only reported, after its use: the main layout's failure ends the set-up.
    if (!conformant)
    {
        QIVO_LOG_ERROR("[Failed] comformant object create");
    }
    return conformant;
}

Evas_Object* Application::CreateMainLayout(Evas_Object* conformant)
{
    Evas_Object* layout = elm_layout_add(conformant);
    if (!layout)
    {
        QIVO_LOG_ERROR("Failed elm_layout_add.");
        return nullptr;
    }
    elm_layout_theme_set(layout, "layout", "application", "default");
    evas_object_size_hint_weight_set(layout, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    evas_object_show(layout);
    elm_object_part_content_set(conformant, nullptr, layout);
    return layout;
}

std::string Application::GetCurrentLocale()
{
    char* text = nullptr;
    const int ret = system_settings_get_value_string(SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE, &text);
    if (ret != 0 || !text)
    {
        QIVO_LOG_ERROR(
            "system_settings_get_value_string(SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE) failed [%d]",
            ret);
        return "";
    }
    std::string locale = text;
    QIVO_LOG_WARN("Lang region text : %s", text);
    std::free(text);
    return locale;
}

void Application::AppSystemLangChanged(void* /*data*/)
{
    const std::string language = GetCurrentLocale();
    QIVO_LOG_INFO("currentLanguage:[%s]", language.c_str());
    if (!language.empty())
    {
        elm_language_set(language.c_str());
    }
}

void Application::RegisterPowerKeyEvent()
{
    mPowerKeyHandler = ecore_event_handler_add(ECORE_EVENT_KEY_UP, OnKeyReleasedCB, this);
}

void Application::UnRegisterPowerKeyEvent()
{
    if (mPowerKeyHandler)
    {
        ecore_event_handler_del(mPowerKeyHandler);
        mPowerKeyHandler = nullptr;
    }
    if (mExtraKeyHandler)
    {
        ecore_event_handler_del(mExtraKeyHandler);
        mExtraKeyHandler = nullptr;
    }
}

Eina_Bool Application::OnKeyReleasedCB(void* data, int /*type*/, void* event)
{
    auto* pThis = static_cast<Application*>(data);
    const auto* key = static_cast<Ecore_Event_Key*>(event);
    if (std::strcmp(key->keyname, "XF86PowerOff") == 0)
    {
        QIVO_LOG_INFO("POWER KEY Released!");
        if (pThis->mAppState == APP_STATE_RESUMED)
        {
            pThis->mIsPowerKeyReleased = true;
        }
    }
    return ECORE_CALLBACK_PASS_ON;
}

void Application::OnAppResumeImpl()
{
    mAppState = APP_STATE_RESUMED;
    RegisterPowerKeyEvent();
    NotifyListeners(&AppEventListener::OnAppResume);
}

void Application::OnAppPauseImpl()
{
    mAppState = APP_STATE_PAUSED;
    UnRegisterPowerKeyEvent();
    NotifyListeners(&AppEventListener::OnAppPause);
    if (mIsPowerKeyReleased)
    {
        OnAppPausedByPowerKey();
        mIsPowerKeyReleased = false;
    }
    // Deliberate: the application never stays in the background.
    ui_app_exit();
}

void Application::OnAppTerminateImpl()
{
    QIVO_LOG_MARK();
    NaviFrame::GetInstance()->Destroy();
}

void Application::RegisterAppEventListener(AppEventListener* listener)
{
    if (!listener)
    {
        return;
    }
    mAppEventListenerList.remove(listener);
    mAppEventListenerList.push_back(listener);
}

void Application::UnRegisterAppEventListener(AppEventListener* listener)
{
    if (!listener)
    {
        return;
    }
    mAppEventListenerList.remove(listener);
}

void Application::NotifyListeners(void (AppEventListener::*event)())
{
    // A listener may unregister itself or others while it is told.
    const std::list<AppEventListener*> listeners = mAppEventListenerList;
    for (AppEventListener* listener : listeners)
    {
        const bool isHeld = std::find(mAppEventListenerList.begin(), mAppEventListenerList.end(),
                                      listener) != mAppEventListenerList.end();
        if (listener && isHeld)
        {
            (listener->*event)();
        }
    }
}

void Application::NotifyAppPaused()
{
    NotifyListeners(&AppEventListener::OnAppPause);
}

void Application::NotifyAppResumed()
{
    NotifyListeners(&AppEventListener::OnAppResume);
}

void Application::NotifyAppTerminate()
{
    NotifyListeners(&AppEventListener::OnAppTerminate);
}

void Application::NotifySystemLangChanged()
{
    NotifyListeners(&AppEventListener::OnSystemLangChanged);
}

void Application::NotifyLanguageChanged()
{
    OnAppSystemLangChangedImpl();
}

bool Application::OnAppControllOperation(std::string operation, ExtraDataMapPtr extraData)
{
    AppControllOperationImpl(operation, extraData);
    return true;
}

void Application::SaveOperation(std::string operation, ExtraDataMapPtr extraData)
{
    mOperation = operation;
    mOperationExtraData = extraData;
}

void Application::ReplyAppControll(app_control_h request, bool succeeded)
{
    QIVO_LOG_MARK();
    app_control_h reply = nullptr;
    int ret = app_control_create(&reply);
    if (ret != 0)
    {
        QIVO_LOG_ERROR("app_control_create failed, %d", ret);
        return;
    }
    ret = app_control_reply_to_launch_request(
        reply, request, succeeded ? APP_CONTROL_RESULT_SUCCEEDED : APP_CONTROL_RESULT_FAILED);
    if (ret != 0)
    {
        QIVO_LOG_ERROR("app_control_reply_to_launch_request failed! [%d]", ret);
    }
    app_control_destroy(reply);
}

bool Application::SOnAppCreate(void* data)
{
    QIVO_LOG_MARK();
    static_cast<Application*>(data)->OnAppCreateImpl();
    // Deliberate: even without a window the process goes on.
    return true;
}

void Application::SOnAppTerminate(void* data)
{
    auto* app = static_cast<Application*>(data);
    app->OnAppTerminateImpl();
    system_settings_unset_changed_cb(SYSTEM_SETTINGS_KEY_TIME_CHANGED);
    system_settings_unset_changed_cb(SYSTEM_SETTINGS_KEY_LOCALE_TIMEFORMAT_24HOUR);
    system_settings_unset_changed_cb(SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE);
    system_settings_unset_changed_cb(SYSTEM_SETTINGS_KEY_LOCALE_COUNTRY);
    delete app;
    QIVO_LOG_MARK();
}

void Application::SOnAppPause(void* data)
{
    QIVO_LOG_MARK();
    static_cast<Application*>(data)->OnAppPauseImpl();
}

void Application::SOnAppResume(void* data)
{
    QIVO_LOG_MARK();
    static_cast<Application*>(data)->OnAppResumeImpl();
}

void Application::SOnAppControl(app_control_h request, void* data)
{
    QIVO_LOG_MARK();
    auto* app = static_cast<Application*>(data);
    char* operation = nullptr;
    const int ret = app_control_get_operation(request, &operation);
    if (ret != 0 || !operation)
    {
        QIVO_LOG_ERROR("get operation fail");
        return;
    }
    QIVO_LOG_INFO("operation:[%s]", operation);
    ExtraDataMapPtr extraData = AppControllUtil::GetExtraData(request);
    app->SetLaunchExtraData(extraData);
    if (!sIsAppControlHandled)
    {
        sIsAppControlHandled = true;
        // Deliberate: the operation runs even when the tree could not be built.
        app->OnSetupLayout();
        app->mResumeFlag = false;
        app->OnAppControllOperation(operation, extraData);
    }
    std::free(operation);
}

void Application::SOnOutOfMemory()
{
    QIVO_LOG_MARK();
    ui_app_exit();
}

void Application::SOnLanguageChanged(system_settings_key_e /*key*/, void* data)
{
    QIVO_LOG_MARK();
    AppSystemLangChanged(data);
}

void Application::SOnRegionChanged(system_settings_key_e /*key*/, void* data)
{
    QIVO_LOG_MARK();
    AppSystemLangChanged(data);
}

void Application::SOnSystemTimeChanged(system_settings_key_e /*key*/, void* data)
{
    QIVO_LOG_MARK();
    // Deliberate: a set clock refreshes what the language hook refreshes.
    static_cast<Application*>(data)->OnAppSystemLangChangedImpl();
}

void Application::SOnDateAndTImeFormatChanged(system_settings_key_e /*key*/, void* /*data*/)
{
    QIVO_LOG_MARK();
}

} // namespace QivoUi

using QivoUi::Application;

int main(int argc, char** argv)
{
    QIVO_LOG_MARK();
    std::set_new_handler(Application::SOnOutOfMemory);
    ui_app_lifecycle_callback_s callbacks = {};
    Application* app = CreateApplication();
    callbacks.create = Application::SOnAppCreate;
    callbacks.terminate = Application::SOnAppTerminate;
    callbacks.pause = Application::SOnAppPause;
    callbacks.resume = Application::SOnAppResume;
    callbacks.app_control = Application::SOnAppControl;
    system_settings_set_changed_cb(SYSTEM_SETTINGS_KEY_TIME_CHANGED,
                                   Application::SOnSystemTimeChanged, app);
    system_settings_set_changed_cb(SYSTEM_SETTINGS_KEY_LOCALE_TIMEFORMAT_24HOUR,
                                   Application::SOnDateAndTImeFormatChanged, app);
    system_settings_set_changed_cb(SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE,
                                   Application::SOnLanguageChanged, app);
    system_settings_set_changed_cb(SYSTEM_SETTINGS_KEY_LOCALE_COUNTRY,
                                   Application::SOnRegionChanged, app);
    try
    {
        return ui_app_main(argc, argv, &callbacks, app);
    }
    catch (int)
    {
        QIVO_LOG_ERROR("ui_app_main launch fail");
        return -1;
    }
}
