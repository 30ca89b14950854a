#include "Application.h"

#include "PageController.h"
#include "common/Log.h"
#include "common/NaviFrame.h"
#include "common/RotaryEventManager.h"
#include "common/util/CommonUtil.h"
#include <Elementary.h>
#include <cstdlib>
#include <ui_extension.h>

using QivoUi::CommonUtil;
using QivoUi::NaviFrame;
using QivoUi::RotaryEventManager;

namespace
{

void LoadTheme()
{
    elm_app_base_scale_set(1.3);
    uxt_theme_set_changeable_ui_enabled(EINA_TRUE);
    const std::string tables = CommonUtil::GetResourcePath("tables/");
    uxt_theme_set_color_table(uxt_theme_add_color_table((tables + "ColorTable.xml").c_str()));
    uxt_theme_set_font_table(uxt_theme_add_font_table((tables + "FontTable.xml").c_str()));
}

void Fill(Evas_Object* window, Evas_Object* child)
{
    evas_object_size_hint_weight_set(child, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_win_resize_object_add(window, child);
    evas_object_show(child);
}

} // namespace

int Application::Run(int argc, char** argv)
{
    ui_app_lifecycle_callback_s callbacks = {};
    callbacks.create = SOnCreate;
    callbacks.terminate = SOnTerminate;
    callbacks.pause = SOnPause;
    callbacks.resume = SOnResume;
    callbacks.app_control = SOnAppControl;
    return ui_app_main(argc, argv, &callbacks, this);
}

bool Application::Create()
{
    LoadTheme();
    mWindow = elm_win_add(nullptr, "newapp", ELM_WIN_BASIC);
    if (!mWindow)
    {
        QIVO_LOG_ERROR("no window");
        return false;
    }
    elm_win_title_set(mWindow, "New App");
    elm_win_autodel_set(mWindow, EINA_TRUE);
    evas_object_show(mWindow);

    Fill(mWindow, elm_bg_add(mWindow));
    Evas_Object* conformant = elm_conformant_add(mWindow);
    Fill(mWindow, conformant);
    Evas_Object* layout = elm_layout_add(conformant);
    elm_layout_theme_set(layout, "layout", "application", "default");
    elm_object_content_set(conformant, layout);
    // There is no keyboard; the toolkit would look for the focus of screens that have gone.
    elm_object_tree_focus_allow_set(layout, EINA_FALSE);

    // The manager first: making it forgets the surface.
    RotaryEventManager::GetInstance();
    RotaryEventManager::CreateCircleSurface(conformant);
    NaviFrame* frame = NaviFrame::GetInstance();
    frame->SetMainWindow(mWindow);
    frame->CreateNaviFrame(layout);
    frame->mNaviFrmaeLowerEventListener = this;
    system_settings_set_changed_cb(SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE, SOnLanguageChanged, this);
    return true;
}

// In this order, whatever moves: the frame needs its widget, and the deletion of the screens'
// widgets needs handles, views and controllers. The last steps take what their deletion has made.
void Application::Terminate()
{
    system_settings_unset_changed_cb(SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE);
    NaviFrame::Destroy();
    evas_object_del(mWindow);
    ScreenController::ReleaseAll();
    NaviFrame::Destroy();
    RotaryEventManager::Destroy();
}

void Application::OnNaviFrameLowered()
{
    ui_app_exit();
}

bool Application::SOnCreate(void* data)
{
    return static_cast<Application*>(data)->Create();
}

void Application::SOnTerminate(void* data)
{
    static_cast<Application*>(data)->Terminate();
}

void Application::SOnPause(void* /*data*/)
{
    NaviFrame::GetInstance()->OnAppPause();
}

void Application::SOnResume(void* /*data*/)
{
    NaviFrame::GetInstance()->OnAppResume();
}

// The first request opens the page; AppControllUtil reads what a request asks for.
void Application::SOnAppControl(app_control_h /*request*/, void* /*data*/)
{
    if (NaviFrame::GetInstance()->IsNaviFrameEmpty())
    {
        ScreenController::Open<PageController>(true);
    }
}

void Application::SOnLanguageChanged(system_settings_key_e /*key*/, void* /*data*/)
{
    char* language = nullptr;
    if (system_settings_get_value_string(SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE, &language) == 0)
    {
        elm_language_set(language);
        std::free(language);
    }
}

int main(int argc, char** argv)
{
    Application application;
    return application.Run(argc, argv);
}
