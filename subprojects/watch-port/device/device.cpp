#include "device/Charger.h"
#include "dlog/PortLog.h"
#include <device/battery.h>

using namespace WatchPort;

namespace
{
int Refuse(device_error_e error, const char* text)
{
    PORT_LOG_ERROR("%s", text);
    return error;
}

// A caller in C may pass any number as a type.
int CheckArguments(const char* function, int type, device_changed_cb callback)
{
    if (type != DEVICE_CALLBACK_BATTERY_CHARGING)
    {
        PORT_LOG_ERROR("%s: type %d is not known; only %d (battery charging) is", function, type,
                       DEVICE_CALLBACK_BATTERY_CHARGING);
        return DEVICE_ERROR_UNKNOWN_TYPE;
    }
    if (callback)
        return DEVICE_ERROR_NONE;
    PORT_LOG_ERROR("%s: the callback is null", function);
    return DEVICE_ERROR_INVALID_PARAMETER;
}
} // namespace

int device_battery_is_charging(bool* charging)
{
    if (!charging)
        return Refuse(DEVICE_ERROR_INVALID_PARAMETER,
                      "device_battery_is_charging: the pointer for the answer is null");
    const std::optional<bool> answer = Charger::GetInstance().Read();
    if (!answer)
        return DEVICE_ERROR_NO_BATTERY;
    *charging = *answer;
    return DEVICE_ERROR_NONE;
}

__attribute__((no_sanitize("enum"))) int
device_add_callback(device_callback_e type, device_changed_cb callback, void* user_data)
{
    const int error = CheckArguments("device_add_callback", type, callback);
    if (error != DEVICE_ERROR_NONE)
        return error;
    if (!Charger::GetInstance().AddCallback(callback, user_data))
        return Refuse(DEVICE_ERROR_ALREADY_ADDED,
                      "device_add_callback: the callback is added already");
    return DEVICE_ERROR_NONE;
}

__attribute__((no_sanitize("enum"))) int device_remove_callback(device_callback_e type,
                                                                device_changed_cb callback)
{
    const int error = CheckArguments("device_remove_callback", type, callback);
    if (error != DEVICE_ERROR_NONE)
        return error;
    if (!Charger::GetInstance().RemoveCallback(callback))
        return Refuse(DEVICE_ERROR_NOT_ADDED, "device_remove_callback: the callback is not added");
    return DEVICE_ERROR_NONE;
}
