#ifndef WATCH_PORT_SYSTEM_SETTINGS_SETTINGS_H
#define WATCH_PORT_SYSTEM_SETTINGS_SETTINGS_H

#include "system-settings/ClockWatch.h"
#include "system-settings/LocaleSettings.h"
#include "system-settings/TimeFormat.h"
#include <system_settings.h>

#include <map>
#include <optional>
#include <string>

namespace WatchPort
{

/** The settings and the callbacks of their changes. Lives as long as the process. */
class Settings
{
public:
    static Settings& GetInstance();

    /** Sets the one callback of a key. Without memory the one of before stays. */
    void SetCallback(system_settings_key_e key, system_settings_changed_cb callback,
                     void* userData);

    /** Stops to follow what no callback wants any more. */
    void UnsetCallback(system_settings_key_e key);

    /** Also asks for news. */
    Locales ReadLocales();

    /** Tells whether clocks count to 24; also asks for news. */
    bool ReadTimeFormat();

private:
    struct Registration
    {
        system_settings_changed_cb callback;
        void* userData;
    };

    Settings() = default;

    LocaleSettings& GetLocales();

    bool HasCallback(system_settings_key_e key) const;
    bool WantsTimeFormat() const;
    bool WantsLocales() const;
    void Follow(system_settings_key_e key);
    bool CountsTo24() const;
    void TellTimeFormat();
    void Notify(system_settings_key_e key);

    std::map<system_settings_key_e, Registration> mRegistrations;
    std::optional<LocaleSettings> mLocales;
    TimeFormat mFormat{[this] { TellTimeFormat(); }};
    bool mToldCountsTo24 = false;
    std::optional<ClockWatch> mClock;
};

} // namespace WatchPort

#endif
