#include "system-settings/LocaleSettings.h"

#include "base/Printable.h"
#include "dlog/PortLog.h"
#include "texts/CatalogueList.h"
#include "texts/LocaleName.h"

#include <cstdlib>
#include <initializer_list>
#include <optional>
#include <utility>

namespace WatchPort
{

namespace
{
constexpr BusPropertyAddress kLocale = {"org.freedesktop.locale1", "/org/freedesktop/locale1",
                                        "org.freedesktop.locale1", "Locale", "as"};
constexpr const char* kVariables[] = {"LC_ALL", "LC_MESSAGES", "LC_TIME", "LANG"};
} // namespace

LocaleSettings::LocaleSettings(ChangedCallback onChanged)
    : mOnChanged(std::move(onChanged)),
      mEnvironment(Choose(ReadEnvironment(), {kDefaultLocale, kDefaultLocale})),
      mLocales(mEnvironment), mService([this] { return FollowService(); })
{
    BeginCatalogues(mLocales.language);
}

std::unique_ptr<BusProperty> LocaleSettings::FollowService()
{
    return BusProperty::Follow(
        kLocale,
        [this](DBusMessageIter* value) { OnAnswer(Choose(ReadService(value), mEnvironment)); },
        [this] { OnAnswer(mLocales); });
}

LocaleSettings::Entries LocaleSettings::ReadEnvironment()
{
    std::map<std::string_view, std::string_view> texts;
    for (const char* variable : kVariables)
    {
        if (const char* text = std::getenv(variable))
            texts[variable] = text;
    }
    return Validate(texts);
}

LocaleSettings::Entries LocaleSettings::ReadService(DBusMessageIter* value)
{
    std::map<std::string_view, std::string_view> texts;
    DBusMessageIter array = Enter(value);
    while (dbus_message_iter_get_arg_type(&array) == DBUS_TYPE_STRING)
    {
        const std::string_view entry = ReadText(&array);
        const size_t equals = entry.find('=');
        if (equals != entry.npos)
            texts[entry.substr(0, equals)] = entry.substr(equals + 1);
    }
    return Validate(texts);
}

LocaleSettings::Entries
LocaleSettings::Validate(const std::map<std::string_view, std::string_view>& texts)
{
    Entries entries;
    for (const char* variable : kVariables)
    {
        const auto text = texts.find(variable);
        if (text == texts.end() || text->second.empty())
            continue;
        if (const std::optional<std::string> locale = NormaliseLocale(text->second))
            entries[variable] = *locale;
        else
            PORT_LOG_WARN("%s=%s is ignored: not a locale (such as ko_KR.UTF-8)", variable,
                          Quoted(text->second).c_str());
    }
    return entries;
}

Locales LocaleSettings::Choose(const Entries& entries, const Locales& otherwise)
{
    const auto first = [&](std::initializer_list<const char*> variables)
    {
        for (const char* variable : variables)
        {
            const auto entry = entries.find(variable);
            if (entry != entries.end())
                return std::optional(entry->second);
        }
        return std::optional<std::string>();
    };
    const auto language = first({"LC_ALL", "LC_MESSAGES", "LANG"});
    const auto region = first({"LC_ALL", "LC_TIME"});
    if (!language && !region)
        return otherwise;
    const std::string chosen = language.value_or(otherwise.language);
    return {chosen, region.value_or(chosen)};
}

void LocaleSettings::OnAnswer(Locales locales)
{
    mService.OnAnswer();
    const Locales before = std::exchange(mLocales, std::move(locales));
    const bool isOtherLanguage = mLocales.language != before.language;
    const bool isOtherRegion = mLocales.region != before.region;
    if (isOtherLanguage)
        ChangeCatalogues(mLocales.language);
    if (isOtherLanguage)
        mOnChanged(SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE);
    if (isOtherRegion)
        mOnChanged(SYSTEM_SETTINGS_KEY_LOCALE_COUNTRY);
}

} // namespace WatchPort
