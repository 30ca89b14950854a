#include "system-settings/Settings.h"

#include "dlog/PortLog.h"

#include <cstring>

using namespace WatchPort;

namespace
{
// A caller in C may pass any number as a key: it is an int until it is known.
int Refuse(system_settings_error_e error, const char* function, int key, const char* reason)
{
    PORT_LOG_ERROR("%s: key %d: %s", function, key, reason);
    return error;
}

int RefuseUnknownKey(const char* function, int key)
{
    return Refuse(
        SYSTEM_SETTINGS_ERROR_UNKNOWN_KEY, function, key,
        "not known; known are 12 (region), 13 (language), 14 (24-hour format), 16 (time)");
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
{
    if (!IsKnown(key))
        return RefuseUnknownKey(__func__, key);
    if (!callback)
        return Refuse(SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER, __func__, key,
                      "the callback is null");
    Settings::GetInstance().SetCallback(key, callback, user_data);
    return SYSTEM_SETTINGS_ERROR_NONE;
}

__attribute__((no_sanitize("enum"))) int system_settings_unset_changed_cb(system_settings_key_e key)
{
    if (!IsKnown(key))
        return RefuseUnknownKey(__func__, key);
    Settings::GetInstance().SetCallback(key, nullptr, nullptr);
    return SYSTEM_SETTINGS_ERROR_NONE;
}

__attribute__((no_sanitize("enum"))) int system_settings_get_value_string(system_settings_key_e key,
                                                                          char** value)
{
    if (!IsKnown(key))
        return RefuseUnknownKey(__func__, key);
    if (!value)
        return Refuse(SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER, __func__, key,
                      "the pointer for the text is null");
    const bool isLanguage = key == SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE;
    if (!isLanguage && key != SYSTEM_SETTINGS_KEY_LOCALE_COUNTRY)
        return Refuse(SYSTEM_SETTINGS_ERROR_NO_STRING, __func__, key,
                      "has no text; 12 (region) and 13 (language) have");
    const Locales locales = Settings::GetInstance().ReadLocales();
    char* copy = strdup((isLanguage ? locales.language : locales.region).c_str());
    if (!copy)
        return Refuse(SYSTEM_SETTINGS_ERROR_OUT_OF_MEMORY, __func__, key, "no memory");
    *value = copy;
    return SYSTEM_SETTINGS_ERROR_NONE;
}

__attribute__((no_sanitize("enum"))) int system_settings_get_value_bool(system_settings_key_e key,
                                                                        bool* value)
{
    if (!IsKnown(key))
        return RefuseUnknownKey(__func__, key);
    if (!value)
        return Refuse(SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER, __func__, key,
                      "the pointer for the truth value is null");
    if (key != SYSTEM_SETTINGS_KEY_LOCALE_TIMEFORMAT_24HOUR)
        return Refuse(SYSTEM_SETTINGS_ERROR_NO_BOOL, __func__, key,
                      "is no truth value; 14 (24-hour format) is");
    *value = Settings::GetInstance().ReadTimeFormat();
    return SYSTEM_SETTINGS_ERROR_NONE;
}
