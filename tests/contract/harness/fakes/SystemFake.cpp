#include "harness/PlatformState.h"
#include <cstring>
#include <device/battery.h>

using Platform::sState;

extern "C" {

int system_settings_set_changed_cb(system_settings_key_e key, system_settings_changed_cb callback,
                                   void* data)
{
    const Allocations::Pause pause;
    Recorder::AddCall("system_settings_set_changed_cb", key, callback, data);
    const int result = Platform::Result("system_settings_set_changed_cb");
    if (result == 0)
    {
        sState.settingCallbacks[key] = {callback, data};
    }
    return result;
}

int system_settings_unset_changed_cb(system_settings_key_e key)
{
    Recorder::AddCall("system_settings_unset_changed_cb", key);
    sState.settingCallbacks.erase(key);
    return Platform::Result("system_settings_unset_changed_cb");
}

int system_settings_get_value_string(system_settings_key_e key, char** value)
{
    Recorder::AddCall("system_settings_get_value_string", key);
    bool gives = false;
    const int result = Platform::Result("system_settings_get_value_string", gives);
    if (gives)
    {
        *value = sState.hasLanguage ? Platform::Give(sState.language, result) : nullptr;
    }
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
    return Platform::Result("device_remove_callback");
}

} // extern "C"
