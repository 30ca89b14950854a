#ifndef WATCH_PORT_SYSTEM_SETTINGS_H
#define WATCH_PORT_SYSTEM_SETTINGS_H

#include <stdbool.h>

/**
 * The user's settings: language, region, clock and time format.
 *
 * Language and region are those of the environment at first, so that they are there at once, and
 * then those of the system's language service (org.freedesktop.locale1, property Locale), which
 * is asked in the background at the first use. An answer that differs is reported as a change.
 *
 *              language                          region
 *   environment LC_ALL, LC_MESSAGES, LANG         LC_ALL, LC_TIME, else the language
 *   service     LC_MESSAGES, LANG                 LC_TIME, else the language
 *
 * The first that is set counts; a service that sets none of them leaves the environment's.
 * "C" and "POSIX" (with any codeset), and nothing at all, read as "en_US.UTF-8".
 * Accepted is [A-Za-z]{2,3}(_[A-Z]{2})?(.codeset)?(@modifier)?; another value is ignored with
 * one warning line (tag "WATCH_PORT"). A value without a codeset gets ".UTF-8".
 *
 * Message catalogues follow the language: at the first use of a language or region key, and at each
 * change before any callback, the environment variable LANGUAGE is set, for "ko_KR.UTF-8" to
 * "ko_KR:ko:en": a language without catalogue reads English. One that the user has set is honoured
 * until the first change. Gettext notices the change at its next look-up. It looks at no catalogue
 * in the locale "C", which ui_app_main() leaves.
 *
 * Whether clocks show 24 hours depends on the region at first: on its locale if the machine has it
 * (T_FMT), else 12 hours in AU, CA, CO, EG, IN, MY, NZ, PH, PK, SA and US and 24 hours
 * elsewhere. The desktop's own setting goes before it, once it is known: the settings portal
 * (org.freedesktop.portal.Settings on the session bus) is asked in the background for
 * "clock-format" of "org.gnome.desktop.interface", "24h" or "12h". Any other answer, and a portal
 * that leaves, change nothing.
 *
 * The first use of a key connects to its bus: about 1 ms, and 2 s where a bus accepts and then
 * keeps silent, which is given up then for as long as the process lives. A bus that is not there
 * or dies is not logged.
 *
 * All calls belong to the main loop's thread; they may precede the toolkit's initialisation.
 * Calls that fail for their arguments log one error line.
 */

#ifdef __cplusplus
extern "C" {
#endif

/** The settings that can be read or followed. */
typedef enum
{
    /** The region, a locale's name such as "de_DE.UTF-8": how dates and times are written. */
    SYSTEM_SETTINGS_KEY_LOCALE_COUNTRY = 12,

    /** The language, a locale's name such as "ko_KR.UTF-8". */
    SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE = 13,

    /** Whether clocks count to 24: a truth value. */
    SYSTEM_SETTINGS_KEY_LOCALE_TIMEFORMAT_24HOUR = 14,

    /**
     * The time, a change only: the clock was set, or the time zone changed. The zone is that of
     * the time service (org.freedesktop.timedate1, property Timezone); while that does not answer,
     * the one that /etc/localtime links to. Time that passes is no change.
     */
    SYSTEM_SETTINGS_KEY_TIME_CHANGED = 16,
} system_settings_key_e;

/** The results of the calls. */
typedef enum
{
    SYSTEM_SETTINGS_ERROR_NONE = 0,               /**< Success. */
    SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER = -1, /**< A null pointer. */
    SYSTEM_SETTINGS_ERROR_UNKNOWN_KEY = -2,       /**< Not a system_settings_key_e. */
    SYSTEM_SETTINGS_ERROR_NO_STRING = -3,         /**< The key's value is not a text. */
    SYSTEM_SETTINGS_ERROR_OUT_OF_MEMORY = -4,     /**< Nothing was changed. */
    SYSTEM_SETTINGS_ERROR_NO_BOOL = -5,           /**< The key's value is not a truth value. */
} system_settings_error_e;

/**
 * Called when a setting has changed, from the main loop and once for each change.
 *
 * Where one event changes several settings, all have their new values before the first callback,
 * and the order is language, region, time format. The callback may set and unset any key.
 *
 * @param key The setting that has changed.
 * @param user_data As given to system_settings_set_changed_cb().
 */
typedef void (*system_settings_changed_cb)(system_settings_key_e key, void* user_data);

/**
 * Sets the callback of a key and replaces the previous one. Only keys with a callback are followed.
 *
 * @param callback Not null.
 * @param user_data Passed to the callback.
 * @return SYSTEM_SETTINGS_ERROR_NONE;
 *         SYSTEM_SETTINGS_ERROR_UNKNOWN_KEY for another key than those above;
 *         SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER for a null callback;
 *         SYSTEM_SETTINGS_ERROR_OUT_OF_MEMORY: the callback of before stays.
 */
int system_settings_set_changed_cb(system_settings_key_e key, system_settings_changed_cb callback,
                                   void* user_data);

/**
 * Removes the callback of a key, if it has one; it is not called again.
 *
 * @return SYSTEM_SETTINGS_ERROR_NONE, or SYSTEM_SETTINGS_ERROR_UNKNOWN_KEY.
 */
int system_settings_unset_changed_cb(system_settings_key_e key);

/**
 * Reads the language or the region, without waiting for any service. Where no callback follows
 * them, the service is asked again in the background, and a later reading gets its answer.
 *
 * @param key SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE or SYSTEM_SETTINGS_KEY_LOCALE_COUNTRY.
 * @param value Set to a copy on success, which the caller frees with free(); else left as it is.
 * @return SYSTEM_SETTINGS_ERROR_NONE;
 *         SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER for a null pointer;
 *         SYSTEM_SETTINGS_ERROR_NO_STRING for a key that can be followed, but has no text;
 *         SYSTEM_SETTINGS_ERROR_UNKNOWN_KEY for any other key;
 *         SYSTEM_SETTINGS_ERROR_OUT_OF_MEMORY.
 */
int system_settings_get_value_string(system_settings_key_e key, char** value);

/**
 * Reads whether clocks count to 24, without waiting for any service. Where no callback follows
 * the key, the services are asked again in the background, and a later reading gets their answer.
 *
 * @param key SYSTEM_SETTINGS_KEY_LOCALE_TIMEFORMAT_24HOUR.
 * @param value Set on success, left as it is otherwise.
 * @return SYSTEM_SETTINGS_ERROR_NONE;
 *         SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER for a null pointer;
 *         SYSTEM_SETTINGS_ERROR_NO_BOOL for a key that can be followed, but is no truth value;
 *         SYSTEM_SETTINGS_ERROR_UNKNOWN_KEY for any other key;
 *         SYSTEM_SETTINGS_ERROR_OUT_OF_MEMORY.
 */
int system_settings_get_value_bool(system_settings_key_e key, bool* value);

#ifdef __cplusplus
}
#endif

#endif
