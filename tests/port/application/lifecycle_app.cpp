// An application that prints each callback of its life, with what it got, and obeys words on its
// standard input. LIFECYCLE holds what its callbacks do besides, such as "create:exit,pause:throw".
// COLOR_TABLE is a file with a colour "probe", THEME one with a group "page".

#include "AppTalk.h"
#include "support/Allocations.h"

#include <Ecore_X.h>
#include <Elementary.h>
#include <app.h>
#include <chrono>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <device/callback.h>
#include <fstream>
#include <functional>
#include <libintl.h>
#include <map>
#include <new>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <system_settings.h>
#include <thread>
#include <ui_extension.h>
#include <unistd.h>
#include <vector>

namespace
{
Evas_Object* sWindow = nullptr;
Evas_Object* sPage = nullptr;

bool Does(const std::string& what)
{
    const char* all = std::getenv("LIFECYCLE");
    return all != nullptr &&
           ("," + std::string(all) + ",").find("," + what + ",") != std::string::npos;
}

int RunWithin()
{
    char name[] = "lifecycle_app";
    char* arguments[] = {name};
    ui_app_lifecycle_callback_s callbacks = {};
    return ui_app_main(1, arguments, &callbacks, nullptr);
}

bool sHasNoMemory = false;

// As the watch's applications do: they ask for the exit and return.
void SetHandler()
{
    std::set_new_handler(
        []
        {
            const Allocations::Pause pause;
            sHasNoMemory = true;
            Say("no memory");
            ui_app_exit();
        });
}

// From now on there is no memory for anything.
void Exhaust()
{
    Allocations::Exhaust();
    ::operator delete(::operator new(1));
}

// From now on there is no memory but what the way out gives back.
void RunShort()
{
    std::ifstream sizes("/proc/self/statm");
    rlim_t pages = 0;
    sizes >> pages;
    const rlim_t size = pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
    const rlimit most = {size, size};
    setrlimit(RLIMIT_AS, &most);
    // The heap may still have room for some.
    constexpr size_t kBlock = 900 << 10;
    static std::vector<void*> sTaken;
    while (!sHasNoMemory)
        sTaken.push_back(::operator new(kBlock));
    ::operator delete(sTaken.back());
    sTaken.pop_back();
}

void Act(const std::string& callback)
{
    if (Does(callback + ":exhaust"))
        Exhaust();
    if (Does(callback + ":exit"))
    {
        ui_app_exit();
        ui_app_exit();
    }
    if (Does(callback + ":nest"))
        Say("nested " + std::to_string(RunWithin()));
    if (Does(callback + ":signal"))
        raise(SIGTERM);
    if (Does(callback + ":wait"))
    {
        char byte = 0;
        Say("waited " + std::to_string(read(STDIN_FILENO, &byte, 1)));
    }
    if (Does(callback + ":throw"))
        throw std::runtime_error("thrown in " + callback);
}

void MakeWindow()
{
    sWindow = elm_win_add(nullptr, "lifecycle-app", ELM_WIN_BASIC);
    elm_win_title_set(sWindow, "lifecycle-app");
    elm_win_autodel_set(sWindow, !Does("window:kept"));
    if (Does("window:kept"))
        evas_object_smart_callback_add(
            sWindow, "delete,request", [](void*, Evas_Object*, void*) { Say("asked to close"); },
            nullptr);
    if (Does("window:watched"))
        evas_object_event_callback_add(
            sWindow, EVAS_CALLBACK_DEL, [](void*, Evas*, Evas_Object*, void*) { Say("deleted"); },
            nullptr);
    if (Does("window:sized"))
        evas_object_resize(sWindow, 200, 100);
    evas_object_show(sWindow);
    Evas_Object* background = elm_bg_add(sWindow);
    evas_object_size_hint_weight_set(background, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_win_resize_object_add(sWindow, background);
    evas_object_show(background);
}

// A window that is a picture within the other one.
void MakePicture()
{
    ecore_x_error_handler_set([](void*) { Say("X error"); }, nullptr);
    Evas_Object* picture = elm_win_add(sWindow, "picture", ELM_WIN_INLINED_IMAGE);
    evas_object_resize(picture, 100, 100);
    evas_object_show(picture);
}

// A text, and a password under it.
void Write()
{
    Evas_Object* label = elm_label_add(sWindow);
    elm_object_text_set(label, "two words");
    Evas_Object* entry = elm_entry_add(sWindow);
    elm_entry_single_line_set(entry, EINA_TRUE);
    elm_entry_password_set(entry, EINA_TRUE);
    elm_entry_entry_set(entry, "secret");
    int top = 0;
    for (Evas_Object* object : {label, entry})
    {
        evas_object_geometry_set(object, 0, top, 300, 100);
        evas_object_show(object);
        top += 100;
    }
}

void SSayCB(void* event, Evas_Object* control, void*)
{
    const std::string name = elm_object_text_get(control);
    if (name == "Once" || name == "Shy")
        evas_object_del(control);
    Say(static_cast<const char*>(event) + (" " + name));
}

void AddControl(Evas_Object* control, const char* name, const char* event)
{
    static int top = 0;
    elm_object_text_set(control, name);
    evas_object_smart_callback_add(control, event, SSayCB, const_cast<char*>(event));
    evas_object_geometry_set(control, 0, top, 300, 40);
    evas_object_show(control);
    top += 40;
}

void AddControls()
{
    AddControl(elm_button_add(sWindow), "Press", "clicked");
    AddControl(elm_button_add(sWindow), "Once", "clicked");
    AddControl(elm_button_add(sWindow), "Shy", "focused");
    AddControl(elm_check_add(sWindow), "Check", "changed");
    Evas_Object* const radio = elm_radio_add(sWindow);
    elm_radio_state_value_set(radio, 1);
    AddControl(radio, "Radio", "changed");
    AddControl(elm_entry_add(sWindow), "typed", "changed");
    Evas_Object* const fixed = elm_entry_add(sWindow);
    AddControl(fixed, "fixed", "changed");
    elm_entry_editable_set(fixed, EINA_FALSE);
    Evas_Object* const off = elm_button_add(sWindow);
    AddControl(off, "Off", "clicked");
    elm_object_disabled_set(off, EINA_TRUE);
}

// Says which part of the theme was tapped.
void ShowTheme()
{
    sPage = elm_layout_add(sWindow);
    elm_layout_file_set(sPage, std::getenv("THEME"), "page");
    elm_layout_signal_callback_add(
        sPage, "mouse,clicked,1", "*",
        [](void*, Evas_Object*, const char*, const char* part)
        { Say(std::string("tapped ") + part); },
        nullptr);
    evas_object_resize(sPage, 300, 300);
    evas_object_show(sPage);
}

void SayLeastHeight()
{
    int height = 0;
    evas_object_size_hint_min_get(sPage, nullptr, &height);
    Say("least height " + std::to_string(height));
}

// As an application does that ends without a thought for its callbacks.
void FollowServices()
{
    device_add_callback(
        DEVICE_CALLBACK_BATTERY_CHARGING, [](device_callback_e, void*, void*) { Say("charger"); },
        nullptr);
    system_settings_set_changed_cb(
        SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE, [](system_settings_key_e, void*) { Say("language"); },
        nullptr);
}

void SayText()
{
    Say(std::string("text ") + dgettext("lifecycle_app", "MESSAGE") + " locale " +
        std::setlocale(LC_MESSAGES, nullptr) + " domain " + textdomain(nullptr));
}

void SaySize()
{
    int width = 0;
    int height = 0;
    evas_object_geometry_get(sWindow, nullptr, nullptr, &width, &height);
    Say("size " + std::to_string(width) + "x" + std::to_string(height));
}

// How the user wants applications to look, as a theme finds it.
void SayLook()
{
    int percent = 0;
    int lightness = 0;
    // Not set at the usual size.
    if (!edje_size_class_get("watch/text-size", &percent, nullptr, nullptr, nullptr))
        percent = 100;
    edje_color_class_get("probe", &lightness, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                         nullptr, nullptr, nullptr, nullptr, nullptr);
    const bool isStill = edje_transition_duration_factor_get() < 1;
    Say("look " + std::to_string(percent) + " % " + (isStill ? "still" : "moving") + " " +
        std::to_string(lightness));
}

void SetColors()
{
    if (const char* file = std::getenv("COLOR_TABLE"))
        uxt_theme_set_color_table(uxt_theme_add_color_table(file));
    uxt_theme_set_changeable_ui_enabled(EINA_TRUE);
}

void Obey(const std::string& word)
{
    static const std::map<std::string, std::function<void()>> kWords = {
        {"lower", [] { elm_win_lower(sWindow); }},
        {"raise", [] { elm_win_raise(sWindow); }},
        {"activate", [] { elm_win_activate(sWindow); }},
        {"hide", [] { evas_object_hide(sWindow); }},
        {"show", [] { evas_object_show(sWindow); }},
        {"iconify", [] { elm_win_iconified_set(sWindow, EINA_TRUE); }},
        {"withdraw", [] { elm_win_withdrawn_set(sWindow, EINA_TRUE); }},
        {"delete", [] { evas_object_del(sWindow); }},
        {"new", MakeWindow},
        {"picture", MakePicture},
        {"write", Write},
        {"controls", AddControls},
        {"theme", ShowTheme},
        {"least-height", SayLeastHeight},
        {"misname", [] { elm_win_title_set(sWindow, "caf\xe9"); }},
        {"close", [] { ecore_x_window_delete_request_send(elm_win_xwindow_get(sWindow)); }},
        {"sync", [] { ecore_x_sync(); }},
        {"toil", [] { std::this_thread::sleep_for(std::chrono::milliseconds(5500)); }},
        {"exit", ui_app_exit},
        {"exhaust", Exhaust},
        {"run-short", RunShort},
        {"quit", elm_exit},
        {"size", SaySize},
        {"text", SayText},
        {"look", SayLook},
    };
    kWords.at(word)();
    Say("did " + word);
}

bool SCreate(void* data)
{
    Say(std::string("create ") + static_cast<const char*>(data));
    if (!Does("create:nothing"))
        MakeWindow();
    SetColors();
    if (Does("create:look"))
        SayLook();
    if (Does("services:followed"))
        FollowServices();
    ObeyInput(Obey);
    Act("create");
    return !Does("create:false");
}

void SAppControl(app_control_h request, void*)
{
    Say("app_control " + Describe(request));
    Act("app_control");
}

void SResume(void*)
{
    Say("resume");
    Act("resume");
    if (Does("resume:replace"))
    {
        evas_object_del(sWindow);
        MakeWindow();
    }
}

void SPause(void*)
{
    Say("pause");
    Act("pause");
}

void STerminate(void*)
{
    Say("terminate");
    Act("terminate");
}

// Nothing else tells of a run without callbacks.
void SayWhenTheLoopRuns()
{
    ecore_app_no_system_modules();
    ecore_init();
    ecore_job_add([](void*) { Say("loop"); }, nullptr);
}

int Run(int argc, char** argv)
{
    ui_app_lifecycle_callback_s callbacks = {SCreate, STerminate, SPause, SResume, SAppControl};
    if (Does("callbacks:none"))
    {
        callbacks = {};
        SayWhenTheLoopRuns();
    }
    if (Does("callbacks:null"))
        return ui_app_main(argc, argv, nullptr, nullptr);
    static char userData[] = "user-data";
    return ui_app_main(argc, argv, &callbacks, userData);
}
} // namespace

int main(int argc, char** argv)
{
    ui_app_exit();
    if (Does("main:handler"))
        SetHandler();
    Act("main");
    try
    {
        const int result = Run(argc, argv);
        Say("result " + std::to_string(result));
        return result;
    }
    catch (const std::runtime_error& error)
    {
        Say(error.what());
        return 99;
    }
}
