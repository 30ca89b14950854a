#ifndef WATCH_PORT_SYSTEM_SETTINGS_LOCALE_SETTINGS_H
#define WATCH_PORT_SYSTEM_SETTINGS_LOCALE_SETTINGS_H

#include "bus/BusProperty.h"
#include "system-settings/Following.h"
#include <system_settings.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace WatchPort
{

/** The names of the two settings that are locales. */
struct Locales
{
    std::string language;
    std::string region;
};

/** Language and region: those of the environment, then the language service's. */
class LocaleSettings
{
public:
    /** Called for each setting that changed, after all are stored and gettext has turned. */
    using ChangedCallback = std::function<void(system_settings_key_e key)>;

    /** Takes the environment's settings and sets the catalogues up. */
    explicit LocaleSettings(ChangedCallback onChanged);
    LocaleSettings(const LocaleSettings&) = delete;
    LocaleSettings& operator=(const LocaleSettings&) = delete;

    const Locales& Get() const { return mLocales; }

    /** See Following. */
    void Refresh() { mService.Refresh(); }
    void Follow(bool isWanted) { mService.Follow(isWanted); }

private:
    /** Valid, normalised locale names by their variables' names. */
    using Entries = std::map<std::string_view, std::string>;

    static Entries ReadEnvironment();
    static Entries ReadService(DBusMessageIter* value);
    static Entries Validate(const std::map<std::string_view, std::string_view>& texts);
    static Locales Choose(const Entries& entries, const Locales& otherwise);

    std::unique_ptr<BusProperty> FollowService();
    void OnAnswer(Locales locales);

    const ChangedCallback mOnChanged;
    const Locales mEnvironment;
    Locales mLocales;
    Following<BusProperty> mService;
};

} // namespace WatchPort

#endif
