#ifndef WATCH_PORT_SYSTEM_SETTINGS_H
#define WATCH_PORT_SYSTEM_SETTINGS_H

#ifdef __cplusplus
extern "C" {
#endif

typedef enum
{
    SYSTEM_SETTINGS_KEY_LOCALE_COUNTRY = 12,
    SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE = 13,
    SYSTEM_SETTINGS_KEY_LOCALE_TIMEFORMAT_24HOUR = 14,
    SYSTEM_SETTINGS_KEY_TIME_CHANGED = 16,
} system_settings_key_e;

typedef void (*system_settings_changed_cb)(system_settings_key_e key, void* user_data);

int system_settings_set_changed_cb(system_settings_key_e key, system_settings_changed_cb callback,
                                   void* user_data);
int system_settings_unset_changed_cb(system_settings_key_e key);
int system_settings_get_value_string(system_settings_key_e key, char** value);

#ifdef __cplusplus
}
#endif

#endif
