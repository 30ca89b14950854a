#include "device/Charger.h"
#include "dlog/PortLog.h"
#include <device/battery.h>

#include <new>

using namespace WatchPort;

namespace
{
// A caller in C may pass any number as a type.
int CheckArguments(const char* function, int type, device_changed_cb callback)
{
    if (type != DEVICE_CALLBACK_BATTERY_CHARGING)
        return PORT_REFUSE(DEVICE_ERROR_UNKNOWN_TYPE, function,
                           "unknown type %d (must be %d, battery charging)", type,
                           DEVICE_CALLBACK_BATTERY_CHARGING);
    if (!callback)
        return PORT_REFUSE(DEVICE_ERROR_INVALID_PARAMETER, function, "the callback is null");
    return DEVICE_ERROR_NONE;
}
} // namespace

int device_battery_is_charging(bool* charging)
try
{
    if (!charging)
        return PORT_REFUSE(DEVICE_ERROR_INVALID_PARAMETER, __func__,
                           "the pointer for the answer is null");
    const std::optional<bool> answer = Charger::GetInstance().Read();
    if (!answer)
        return DEVICE_ERROR_NO_BATTERY;
    *charging = *answer;
    return DEVICE_ERROR_NONE;
}
catch (const std::bad_alloc&)
{
    return PORT_REFUSE(DEVICE_ERROR_OUT_OF_MEMORY, __func__, "out of memory");
}

__attribute__((no_sanitize("enum"))) int
device_add_callback(device_callback_e type, device_changed_cb callback, void* user_data)
try
{
    const int error = CheckArguments(__func__, type, callback);
    if (error != DEVICE_ERROR_NONE)
        return error;
    if (!Charger::GetInstance().AddCallback(callback, user_data))
        return PORT_REFUSE(DEVICE_ERROR_ALREADY_ADDED, __func__,
                           "the callback has already been added");
    return DEVICE_ERROR_NONE;
}
catch (const std::bad_alloc&)
{
    return PORT_REFUSE(DEVICE_ERROR_OUT_OF_MEMORY, __func__, "out of memory");
}

__attribute__((no_sanitize("enum"))) int device_remove_callback(device_callback_e type,
                                                                device_changed_cb callback)
{
    const int error = CheckArguments(__func__, type, callback);
    if (error != DEVICE_ERROR_NONE)
        return error;
    if (!Charger::GetInstance().RemoveCallback(callback))
        return PORT_REFUSE(DEVICE_ERROR_NOT_ADDED, __func__, "the callback has not been added");
    return DEVICE_ERROR_NONE;
}
