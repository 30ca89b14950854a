#include "harness/Platform.h"

#include "harness/Recorder.h"
#include <cstdarg>
#include <cstring>
#include <device/battery.h>
#include <device/callback.h>
#include <dlog.h>
#include <list>
#include <memory>
#include <ui_extension.h>

struct app_control_s
{
    bool hasOperation;
    std::string operation;
    std::map<std::string, std::string> extraData;
};

namespace Platform
{

namespace
{

struct BackCallback
{
    Evas_Object* object;
    Eext_Event_Cb callback;
    void* data;
};

struct RotaryCallback
{
    Evas_Object* object;
    Eext_Rotary_Event_Cb callback;
    void* data;
};

struct SettingCallback
{
    system_settings_changed_cb callback;
    void* data;
};

struct State
{
    std::vector<LogLine> logLines;
    bool fillsOutputsOnFailure = false;
    bool hasLanguage = true;
    std::string language = "en_US.UTF-8";
    std::map<system_settings_key_e, SettingCallback> settingCallbacks;
    bool isCharging = false;
    device_changed_cb chargerCallback = nullptr;
    void* chargerData = nullptr;
    std::list<std::unique_ptr<app_control_s>> requests;
    std::vector<BackCallback> backCallbacks;
    std::vector<RotaryCallback> rotaryCallbacks;
    Evas_Object* activatedObject = nullptr;
};

State sState;

// The told answer of a call that returns an int, else success.
int Result(const char* call)
{
    std::intptr_t answer = 0;
    return Recorder::TakeAnswer(call, answer) ? static_cast<int>(answer) : 0;
}

bool IsToldToFail(const char* call)
{
    std::intptr_t answer = 0;
    return Recorder::TakeAnswer(call, answer);
}

char* Copy(const char* call, const std::string& text)
{
    return IsToldToFail(call) ? nullptr : strdup(text.c_str());
}

// Only a call that succeeds gives its caller a text to free.
char* Give(std::string& text, int result)
{
    return result == 0 ? strdup(text.c_str()) : text.data();
}

void ChangeCharger(bool isCharging)
{
    sState.isCharging = isCharging;
    if (sState.chargerCallback)
    {
        sState.chargerCallback(DEVICE_CALLBACK_BATTERY_CHARGING,
                               reinterpret_cast<void*>(static_cast<std::intptr_t>(isCharging)),
                               sState.chargerData);
    }
}

// The class of a log line, from its priority and its escape together.
const char* ClassOf(int priority, const std::string& format)
{
    static const struct
    {
        int priority;
        const char* beginning;
        const char* name;
    } kClasses[] = {
        {DLOG_ERROR, "%s: %s(%d) > \033[0;40;31m", "error"},
        {DLOG_WARN, "%s: %s(%d) > \033[1;40;33m", "warn"},
        {DLOG_INFO, "%s: %s(%d) > \033[1;35m ###\033[0;m", "mark"},
        {DLOG_INFO, "%s: %s(%d) > \033[1;35m", "info"},
        {DLOG_INFO, "%s: %s(%d) > \033[1;40;34m BEGIN >>>>\033[0;m", "begin"},
        {DLOG_INFO, "%s: %s(%d) > \033[1;40;34m END <<<<\033[0;m", "end"},
    };
    for (const auto& logClass : kClasses)
    {
        if (priority == logClass.priority &&
            format.compare(0, std::strlen(logClass.beginning), logClass.beginning) == 0)
        {
            return logClass.name;
        }
    }
    return "unknown";
}

// The message between the escape and the reset, with its arguments filled in.
std::string MessageOf(const std::string& line)
{
    const std::size_t escape = line.find('\033');
    const std::size_t begin = line.find('m', escape) + 1;
    const std::string reset = "\033[0;m";
    const std::size_t end = line.rfind(reset);
    const bool isWhole = end != std::string::npos && end + reset.size() == line.size();
    return isWhole ? line.substr(begin, end - begin) : "not reset: " + line;
}

void RecordLogLine(const LogLine& log)
{
    const std::string logClass = ClassOf(log.priority, log.format);
    std::string line = logClass + "(" + log.function + ")";
    if (logClass != "mark" && logClass != "begin" && logClass != "end")
    {
        line += " " + log.text;
    }
    Recorder::Add(line);
}

} // namespace

std::function<int(ui_app_lifecycle_callback_s*, void*)> sMainLoop;

void Reset()
{
    sState = State();
    sMainLoop = nullptr;
}

std::string ResourceDirectory()
{
    return RESOURCE_DIRECTORY "/";
}

const std::vector<LogLine>& LogLines()
{
    return sState.logLines;
}

void SetLanguage(const char* language)
{
    sState.hasLanguage = language != nullptr;
    sState.language = language ? language : "";
}

void ChangeSetting(system_settings_key_e key)
{
    const auto setting = sState.settingCallbacks.find(key);
    if (setting != sState.settingCallbacks.end())
    {
        setting->second.callback(key, setting->second.data);
    }
}

void SetCharging(bool isCharging)
{
    sState.isCharging = isCharging;
}

void PlugCharger()
{
    ChangeCharger(true);
}

void UnplugCharger()
{
    ChangeCharger(false);
}

void FillOutputsOnFailure()
{
    sState.fillsOutputsOnFailure = true;
}

app_control_h MakeRequest(const char* operation,
                          const std::map<std::string, std::string>& extraData)
{
    sState.requests.push_back(std::make_unique<app_control_s>(
        app_control_s{operation != nullptr, operation ? operation : "", extraData}));
    Recorder::Name(sState.requests.back().get(), "request");
    return sState.requests.back().get();
}

void PressBack(Evas_Object* object)
{
    const std::vector<BackCallback> registered = sState.backCallbacks;
    for (const BackCallback& back : registered)
    {
        if (back.object == object)
        {
            back.callback(back.data, object, nullptr);
        }
    }
}

void TurnBezel(Evas_Object* object, Eext_Rotary_Event_Direction direction, unsigned timeStamp)
{
    Eext_Rotary_Event_Info info = {direction, timeStamp};
    const std::vector<RotaryCallback> registered = sState.rotaryCallbacks;
    for (const RotaryCallback& rotary : registered)
    {
        if (rotary.object == object)
        {
            const Eina_Bool isTaken = rotary.callback(rotary.data, object, &info);
            Recorder::Add(isTaken ? "detent taken" : "detent passed on");
        }
    }
}

Evas_Object* ActivatedObject()
{
    return sState.activatedObject;
}

} // namespace Platform

using Platform::sState;

extern "C" {

int __dlog_print(log_id_t buffer, int priority, const char* tag, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    va_list prefix;
    va_copy(prefix, arguments);
    const char* file = va_arg(prefix, const char*);
    const char* function = va_arg(prefix, const char*);
    const int line = va_arg(prefix, int);
    va_end(prefix);
    char whole[4096];
    vsnprintf(whole, sizeof(whole), format, arguments);
    va_end(arguments);
    sState.logLines.push_back({static_cast<int>(buffer), priority, tag, format, file, function,
                               line, Platform::MessageOf(whole)});
    Platform::RecordLogLine(sState.logLines.back());
    return 0;
}

char* app_get_resource_path(void)
{
    return Platform::Copy("app_get_resource_path", Platform::ResourceDirectory());
}

char* app_get_data_path(void)
{
    return Platform::Copy("app_get_data_path", "/data/of/the/app/");
}

int ui_app_main(int argc, char** argv, ui_app_lifecycle_callback_s* callbacks, void* data)
{
    Recorder::AddCall("ui_app_main", argc, static_cast<const void*>(argv),
                      static_cast<const void*>(callbacks), data);
    return Platform::sMainLoop ? Platform::sMainLoop(callbacks, data) : 0;
}

void ui_app_exit(void)
{
    Recorder::AddCall("ui_app_exit");
}

int app_control_create(app_control_h* handle)
{
    Recorder::AddCall("app_control_create");
    std::intptr_t answer = 0;
    const bool isTold = Recorder::TakeAnswer("app_control_create", answer);
    if (!isTold || sState.fillsOutputsOnFailure)
    {
        *handle = Platform::MakeRequest(nullptr);
        Recorder::NameResult("app_control_create", *handle);
    }
    return static_cast<int>(answer);
}

int app_control_destroy(app_control_h handle)
{
    Recorder::AddCall("app_control_destroy", handle);
    return 0;
}

int app_control_get_operation(app_control_h handle, char** operation)
{
    Recorder::AddCall("app_control_get_operation", handle);
    const int result = Platform::Result("app_control_get_operation");
    if (handle->hasOperation)
    {
        *operation = Platform::Give(handle->operation, result);
    }
    return result;
}

int app_control_set_operation(app_control_h handle, const char* operation)
{
    Recorder::AddCall("app_control_set_operation", handle, operation);
    return Platform::Result("app_control_set_operation");
}

int app_control_set_app_id(app_control_h handle, const char* id)
{
    Recorder::AddCall("app_control_set_app_id", handle, id);
    return Platform::Result("app_control_set_app_id");
}

int app_control_get_extra_data(app_control_h handle, const char* key, char** value)
{
    Recorder::AddCall("app_control_get_extra_data", handle, key);
    const int result = Platform::Result("app_control_get_extra_data");
    if (result == 0 || sState.fillsOutputsOnFailure)
    {
        *value = strdup(handle->extraData[key].c_str());
    }
    return result;
}

int app_control_add_extra_data(app_control_h handle, const char* key, const char* value)
{
    Recorder::AddCall("app_control_add_extra_data", handle, key, value);
    return Platform::Result("app_control_add_extra_data");
}

int app_control_foreach_extra_data(app_control_h handle, app_control_extra_data_cb callback,
                                   void* data)
{
    Recorder::AddCall("app_control_foreach_extra_data", handle, callback);
    const int result = Platform::Result("app_control_foreach_extra_data");
    if (result != 0)
    {
        return result;
    }
    for (const auto& [key, value] : handle->extraData)
    {
        if (!callback(handle, key.c_str(), data))
        {
            break;
        }
    }
    return 0;
}

int app_control_send_launch_request(app_control_h handle, app_control_reply_cb callback, void* data)
{
    Recorder::AddCall("app_control_send_launch_request", handle, callback, data);
    return Platform::Result("app_control_send_launch_request");
}

int app_control_reply_to_launch_request(app_control_h reply, app_control_h request,
                                        app_control_result_e result)
{
    Recorder::AddCall("app_control_reply_to_launch_request", reply, request, result);
    return Platform::Result("app_control_reply_to_launch_request");
}

int system_settings_set_changed_cb(system_settings_key_e key, system_settings_changed_cb callback,
                                   void* data)
{
    Recorder::AddCall("system_settings_set_changed_cb", key, callback, data);
    sState.settingCallbacks[key] = {callback, data};
    return Platform::Result("system_settings_set_changed_cb");
}

int system_settings_unset_changed_cb(system_settings_key_e key)
{
    Recorder::AddCall("system_settings_unset_changed_cb", key);
    sState.settingCallbacks.erase(key);
    return 0;
}

int system_settings_get_value_string(system_settings_key_e key, char** value)
{
    Recorder::AddCall("system_settings_get_value_string", key);
    const int result = Platform::Result("system_settings_get_value_string");
    *value = sState.hasLanguage ? Platform::Give(sState.language, result) : nullptr;
    return result;
}

int device_battery_is_charging(bool* isCharging)
{
    Recorder::AddCall("device_battery_is_charging");
    const int result = Platform::Result("device_battery_is_charging");
    if (result == 0 || sState.fillsOutputsOnFailure)
    {
        *isCharging = sState.isCharging;
    }
    return result;
}

int device_add_callback(device_callback_e type, device_changed_cb callback, void* data)
{
    Recorder::AddCall("device_add_callback", type, callback, data);
    const int result = Platform::Result("device_add_callback");
    if (result == 0)
    {
        sState.chargerCallback = callback;
        sState.chargerData = data;
    }
    return result;
}

int device_remove_callback(device_callback_e type, device_changed_cb callback)
{
    Recorder::AddCall("device_remove_callback", type, callback);
    sState.chargerCallback = nullptr;
    return 0;
}

void eext_object_event_callback_add(Evas_Object* object, Eext_Callback_Type type,
                                    Eext_Event_Cb callback, void* data)
{
    Recorder::AddCall("eext_object_event_callback_add", object, type, callback, data);
    sState.backCallbacks.push_back({object, callback, data});
}

Eext_Circle_Surface* eext_circle_surface_conformant_add(Evas_Object* conformant)
{
    static char sSurface;
    Recorder::AddCall("eext_circle_surface_conformant_add", conformant);
    if (Platform::IsToldToFail("eext_circle_surface_conformant_add"))
    {
        return nullptr;
    }
    Recorder::NameResult("eext_circle_surface_conformant_add", &sSurface);
    return reinterpret_cast<Eext_Circle_Surface*>(&sSurface);
}

Evas_Object* eext_circle_object_scroller_add(Evas_Object* scroller, Eext_Circle_Surface* surface)
{
    Recorder::AddCall("eext_circle_object_scroller_add", scroller, surface);
    if (Platform::IsToldToFail("eext_circle_object_scroller_add"))
    {
        return nullptr;
    }
    Evas_Object* circle = evas_object_rectangle_add(evas_object_evas_get(scroller));
    Recorder::NameResult("eext_circle_object_scroller_add", circle);
    return circle;
}

void eext_circle_object_scroller_policy_set(Evas_Object* object, Elm_Scroller_Policy horizontal,
                                            Elm_Scroller_Policy vertical)
{
    Recorder::AddCall("eext_circle_object_scroller_policy_set", object, horizontal, vertical);
}

Eina_Bool eext_rotary_object_event_callback_priority_add(Evas_Object* object,
                                                         Evas_Callback_Priority priority,
                                                         Eext_Rotary_Event_Cb callback, void* data)
{
    Recorder::AddCall("eext_rotary_object_event_callback_priority_add", object, priority, callback,
                      data);
    if (Platform::IsToldToFail("eext_rotary_object_event_callback_priority_add"))
    {
        return EINA_FALSE;
    }
    sState.rotaryCallbacks.push_back({object, callback, data});
    return EINA_TRUE;
}

void* eext_rotary_object_event_callback_del(Evas_Object* object, Eext_Rotary_Event_Cb callback)
{
    Recorder::AddCall("eext_rotary_object_event_callback_del", object, callback);
    auto& registered = sState.rotaryCallbacks;
    for (auto rotary = registered.begin(); rotary != registered.end(); ++rotary)
    {
        if (rotary->object == object && rotary->callback == callback)
        {
            void* data = rotary->data;
            registered.erase(rotary);
            return data;
        }
    }
    return nullptr;
}

void eext_rotary_object_event_activated_set(Evas_Object* object, Eina_Bool isActivated)
{
    Recorder::AddCall("eext_rotary_object_event_activated_set", object, isActivated);
    if (isActivated)
    {
        sState.activatedObject = object;
    }
    else if (sState.activatedObject == object)
    {
        sState.activatedObject = nullptr;
    }
}

int uxt_theme_set_changeable_ui_enabled(Eina_Bool isEnabled)
{
    Recorder::AddCall("uxt_theme_set_changeable_ui_enabled", isEnabled);
    return 0;
}

uxt_theme_color_table_h uxt_theme_add_color_table(const char* path)
{
    static char sTable;
    Recorder::AddCall("uxt_theme_add_color_table", path);
    if (Platform::IsToldToFail("uxt_theme_add_color_table"))
    {
        return nullptr;
    }
    Recorder::Name(&sTable, "colorTable");
    return reinterpret_cast<uxt_theme_color_table_h>(&sTable);
}

int uxt_theme_set_color_table(uxt_theme_color_table_h table)
{
    Recorder::AddCall("uxt_theme_set_color_table", table);
    return 0;
}

uxt_theme_font_table_h uxt_theme_add_font_table(const char* path)
{
    static char sTable;
    Recorder::AddCall("uxt_theme_add_font_table", path);
    if (Platform::IsToldToFail("uxt_theme_add_font_table"))
    {
        return nullptr;
    }
    Recorder::Name(&sTable, "fontTable");
    return reinterpret_cast<uxt_theme_font_table_h>(&sTable);
}

int uxt_theme_set_font_table(uxt_theme_font_table_h table)
{
    Recorder::AddCall("uxt_theme_set_font_table", table);
    return 0;
}

int uxt_theme_object_set_color(Evas_Object* object, const char* code)
{
    Recorder::AddCall("uxt_theme_object_set_color", object, code);
    return Platform::Result("uxt_theme_object_set_color");
}

} // extern "C"
