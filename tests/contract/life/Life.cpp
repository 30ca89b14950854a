#include "life/Life.h"

#include "common/NaviFrame.h"
#include "common/RotaryEventManager.h"
#include "harness/Toolkit.h"
#include "life/ApplicationUnit.h"
#include <new>

using QivoUi::Application;
using QivoUi::GuideApplication;
using QivoUi::GuideView;

namespace
{

GuideApplication* sApplication = nullptr;

GuideView* View()
{
    const auto& controller = sApplication->mGuideViewController;
    return controller ? controller->mGuideViewPtr.get() : nullptr;
}

void ReleasePowerKey(Application* app)
{
    Ecore_Event_Key key = {};
    key.keyname = "XF86PowerOff";
    Application::OnKeyReleasedCB(app, ECORE_EVENT_KEY_UP, &key);
}

void ChangeSettings()
{
    Platform::ChangeSetting(SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE);
    Platform::ChangeSetting(SYSTEM_SETTINGS_KEY_LOCALE_COUNTRY);
    Platform::ChangeSetting(SYSTEM_SETTINGS_KEY_TIME_CHANGED);
    Platform::ChangeSetting(SYSTEM_SETTINGS_KEY_LOCALE_TIMEFORMAT_24HOUR);
}

void UseThePage(GuideView* view)
{
    Platform::PlugCharger();
    Platform::UnplugCharger();
    if (view && view->mScroller)
    {
        evas_object_smart_callback_call(view->mScroller, "scroll", nullptr);
    }
    if (view && view->mLayout)
    {
        Platform::PressBack(view->mLayout);
    }
}

int LiveThrough(ui_app_lifecycle_callback_s* callbacks, void* data)
{
    callbacks->create(data);
    callbacks->app_control(Platform::MakeRequest("show", {{"key", "value"}}), data);
    callbacks->resume(data);
    callbacks->app_control(Platform::MakeRequest("again"), data);
    ChangeSettings();
    UseThePage(View());
    ReleasePowerKey(sApplication);
    callbacks->pause(data);
    callbacks->terminate(data);
    sApplication = nullptr;
    return 0;
}

} // namespace

extern "C" {

// The address sanitizer's own choice of how much of a stack it keeps costs half the time of many
// lives; this is enough to tell who made an allocation.
const char* __asan_default_options()
{
    return "malloc_context_size=16";
}

int __real_main(int argc, char** argv);
GuideApplication* __real__Z17CreateApplicationv();

// The linker sends the one call of CreateApplication() here.
GuideApplication* __wrap__Z17CreateApplicationv()
{
    sApplication = __real__Z17CreateApplicationv();
    Recorder::Name(sApplication, "app");
    return sApplication;
}
}

namespace Life
{

int Run()
{
    static char sProgram[] = "qivo-guide-app";
    static char* sArguments[] = {sProgram, nullptr};
    Platform::sMainLoop = LiveThrough;
    return __real_main(1, sArguments);
}

GuideApplication* TheApplication()
{
    return sApplication;
}

void EndProcess()
{
    std::set_new_handler(nullptr);
    // Only a main loop that never ran leaves it.
    delete sApplication;
    sApplication = nullptr;
    QivoUi::NaviFrame::Destroy();
    if (Application::mWindow)
    {
        DeleteWindow(Application::mWindow);
        Application::mWindow = nullptr;
    }
    QivoUi::NaviFrame::Destroy();
    QivoUi::RotaryEventManager::Destroy();
    elm_theme_extension_del(nullptr, RESOURCE_DIRECTORY "/edje/qivoui.edj");
    ForgetTheFirstRequest();
    Recorder::Reset();
    Platform::Reset();
}

} // namespace Life
