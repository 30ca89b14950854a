#ifndef WATCH_PORT_SYSTEM_SETTINGS_LOCALE_SETTINGS_H
#define WATCH_PORT_SYSTEM_SETTINGS_LOCALE_SETTINGS_H

#include "bus/BusProperty.h"
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
    std::string mLanguage;
    std::string mRegion;
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

    /** Asks the service in the background, if no question is out and it is not followed. */
    void Refresh();

    /** Follows the service, or stops to. */
    void Follow(bool isWanted);

private:
    /** Valid, normalised locale names by their variables' names. */
    using Entries = std::map<std::string_view, std::string>;

    static Entries ReadEnvironment();
    static Entries ReadService(DBusMessageIter* value);
    static Entries Validate(const std::map<std::string_view, std::string_view>& texts);
    static Locales Choose(const Entries& entries, const Locales& otherwise);

    void OnAnswer(Locales locales);

    const ChangedCallback mOnChanged;
    const Locales mEnvironment;
    Locales mLocales;
    std::unique_ptr<BusProperty> mService;
    bool mIsFollowed = false;
};

} // namespace WatchPort

#endif
