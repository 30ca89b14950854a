#include "Application.h"

#include "common/Log.h"
#include "common/NaviFrame.h"
#include "common/RotaryEventManager.h"
#include "common/util/CommonUtil.h"
#include "common/util/StringUtil.h"
#include "controllers/ListController.h"
#include "controllers/PayController.h"
#include <Elementary.h>
#include <cmath>
#include <cstdlib>
#include <ui_extension.h>

namespace Cards
{

using QivoUi::CommonUtil;
using QivoUi::ExtraDataMap;
using QivoUi::NaviFrame;
using QivoUi::RotaryEventManager;
using QivoUi::StringUtil;

namespace
{

void LoadTheme()
{
    elm_theme_extension_add(nullptr, CommonUtil::GetResourcePath("edje/cards.edj").c_str());
    elm_app_base_scale_set(1.3);
    uxt_theme_set_changeable_ui_enabled(EINA_TRUE);
    const std::string tables = CommonUtil::GetResourcePath("tables/");
    uxt_theme_set_color_table(
        uxt_theme_add_color_table((tables + "ChangeableColorTable.xml").c_str()));
    uxt_theme_set_font_table(uxt_theme_add_font_table((tables + "FontInfoTable.xml").c_str()));
}

void Fill(Evas_Object* window, Evas_Object* child)
{
    evas_object_size_hint_weight_set(child, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_win_resize_object_add(window, child);
    evas_object_show(child);
}

std::string Find(const ExtraDataMap& extraData, const char* key)
{
    const auto entry = extraData.find(key);
    return entry == extraData.end() ? "" : entry->second;
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
    mWindow = elm_win_add(nullptr, "cards", ELM_WIN_BASIC);
    if (!mWindow)
    {
        QIVO_LOG_ERROR("no window");
        return false;
    }
    elm_win_title_set(mWindow, "Cards");
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
    mWallet = std::make_unique<Wallet>();
    system_settings_set_changed_cb(SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE, SOnLanguageChanged, this);
    return true;
}

// In this order, whatever moves: the frame needs its widget, and the deletion of the screens'
// widgets needs handles, views and controllers. The last step takes the frame that their deletion
// has made.
void Application::Terminate()
{
    system_settings_unset_changed_cb(SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE);
    NaviFrame::Destroy();
    evas_object_del(mWindow);
    ScreenController::ReleaseAll();
    NaviFrame::Destroy();
    RotaryEventManager::Destroy();
}

void Application::TakeRequest(app_control_h request)
{
    char* operation = nullptr;
    if (app_control_get_operation(request, &operation) != 0)
    {
        return;
    }
    if (NaviFrame::GetInstance()->IsNaviFrameEmpty())
    {
        ScreenController::Open<ListController>(true, *mWallet);
    }
    const QivoUi::ExtraDataMapPtr extraData = AppControllUtil::GetExtraData(request);
    const std::string reason = Obey(operation, *extraData);
    std::free(operation);
    if (!reason.empty())
    {
        QIVO_LOG_WARN("refused : %s", reason.c_str());
    }
    if (!Find(*extraData, "reply").empty())
    {
        AppControllUtil::ReplyAppControl(
            request, reason.empty(),
            std::make_shared<ExtraDataMap>(ExtraDataMap{{"reason", reason}}));
    }
}

std::string Application::Obey(const std::string& operation, const ExtraDataMap& extraData)
{
    PayController* payment = PayController::GetOpen();
    if (operation == "pay")
    {
        return payment ? "another payment is under way" : Pay(extraData);
    }
    if (operation == "cancel" && payment)
    {
        payment->Cancel();
    }
    if (operation == "home" && !payment)
    {
        ScreenController::GetHome()->DeleteAboveNaviFrameItem();
    }
    return "";
}

std::string Application::Pay(const ExtraDataMap& extraData)
{
    const std::string amount = Find(extraData, "amount");
    double value = 0;
    try
    {
        value = StringUtil::StringToDouble(amount);
    }
    catch (const std::exception&)
    {
        return "\"" + amount + "\" is not an amount (such as 3.50)";
    }
    const std::string number = Find(extraData, "card");
    const Payment payment = {mWallet->FindCard(number), std::llround(value * 100)};
    if (payment.card < 0)
    {
        return "\"" + number + "\" is not the number of a card";
    }
    if (payment.cents <= 0 || !mWallet->CanPay(payment.card, payment.cents))
    {
        return amount + " cannot be paid with this card";
    }
    ScreenController::Open<PayController>(true, *mWallet, payment, true);
    return "";
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
    QIVO_LOG_MARK();
    NaviFrame::GetInstance()->OnAppPause();
}

void Application::SOnResume(void* /*data*/)
{
    QIVO_LOG_MARK();
    NaviFrame::GetInstance()->OnAppResume();
}

void Application::SOnAppControl(app_control_h request, void* data)
{
    static_cast<Application*>(data)->TakeRequest(request);
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

} // namespace Cards

int main(int argc, char** argv)
{
    Cards::Application application;
    return application.Run(argc, argv);
}
