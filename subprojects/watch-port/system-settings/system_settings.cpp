#include "system-settings/Settings.h"

#include "dlog/PortLog.h"

#include <cstring>
#include <new>

using namespace WatchPort;

namespace
{
// A caller in C may pass any number as a key: it is an int until it is known.
int RefuseUnknownKey(const char* function, int key)
{
    return PORT_REFUSE(
        SYSTEM_SETTINGS_ERROR_UNKNOWN_KEY, function,
        "key %d is not known; known are 12 (region), 13 (language), 14 (24-hour format), 16 (time)",
        key);
}

bool IsKnown(int key)
{
    return key == SYSTEM_SETTINGS_KEY_LOCALE_COUNTRY ||
           key == SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE ||
           key == SYSTEM_SETTINGS_KEY_LOCALE_TIMEFORMAT_24HOUR ||
           key == SYSTEM_SETTINGS_KEY_TIME_CHANGED;
}
} // namespace

__attribute__((no_sanitize("enum"))) int
system_settings_set_changed_cb(system_settings_key_e key, system_settings_changed_cb callback,
                               void* user_data)
try
{
    if (!IsKnown(key))
        return RefuseUnknownKey(__func__, key);
    if (!callback)
        return PORT_REFUSE(SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER, __func__,
                           "the callback of key %d is null", key);
    Settings::GetInstance().SetCallback(key, callback, user_data);
    return SYSTEM_SETTINGS_ERROR_NONE;
}
catch (const std::bad_alloc&)
{
    return PORT_REFUSE(SYSTEM_SETTINGS_ERROR_OUT_OF_MEMORY, __func__, "out of memory");
}

__attribute__((no_sanitize("enum"))) int system_settings_unset_changed_cb(system_settings_key_e key)
{
    if (!IsKnown(key))
        return RefuseUnknownKey(__func__, key);
    Settings::GetInstance().UnsetCallback(key);
    return SYSTEM_SETTINGS_ERROR_NONE;
}

__attribute__((no_sanitize("enum"))) int system_settings_get_value_string(system_settings_key_e key,
                                                                          char** value)
try
{
    if (!IsKnown(key))
        return RefuseUnknownKey(__func__, key);
    if (!value)
        return PORT_REFUSE(SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER, __func__,
                           "the pointer for the text of key %d is null", key);
    const bool isLanguage = key == SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE;
    if (!isLanguage && key != SYSTEM_SETTINGS_KEY_LOCALE_COUNTRY)
        return PORT_REFUSE(SYSTEM_SETTINGS_ERROR_NO_STRING, __func__,
                           "key %d is not a text; 12 (region) and 13 (language) are", key);
    const Locales locales = Settings::GetInstance().ReadLocales();
    char* copy = strdup((isLanguage ? locales.language : locales.region).c_str());
    if (!copy)
        throw std::bad_alloc();
    *value = copy;
    return SYSTEM_SETTINGS_ERROR_NONE;
}
catch (const std::bad_alloc&)
{
    return PORT_REFUSE(SYSTEM_SETTINGS_ERROR_OUT_OF_MEMORY, __func__, "out of memory");
}

__attribute__((no_sanitize("enum"))) int system_settings_get_value_bool(system_settings_key_e key,
                                                                        bool* value)
try
{
    if (!IsKnown(key))
        return RefuseUnknownKey(__func__, key);
    if (!value)
        return PORT_REFUSE(SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER, __func__,
                           "the pointer for the value of key %d is null", key);
    if (key != SYSTEM_SETTINGS_KEY_LOCALE_TIMEFORMAT_24HOUR)
        return PORT_REFUSE(SYSTEM_SETTINGS_ERROR_NO_BOOL, __func__,
                           "key %d is not true or false; 14 (24-hour format) is", key);
    *value = Settings::GetInstance().ReadTimeFormat();
    return SYSTEM_SETTINGS_ERROR_NONE;
}
catch (const std::bad_alloc&)
{
    return PORT_REFUSE(SYSTEM_SETTINGS_ERROR_OUT_OF_MEMORY, __func__, "out of memory");
}
