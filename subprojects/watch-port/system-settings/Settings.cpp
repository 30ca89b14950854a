#include "system-settings/Settings.h"

#include "base/ApplicationCalls.h"

#include <utility>

namespace WatchPort
{

Settings& Settings::GetInstance()
{
    static auto& sInstance = *new Settings;
    return sInstance;
}

void Settings::SetCallback(system_settings_key_e key, system_settings_changed_cb callback,
                           void* userData)
{
    Follow(key);
    mRegistrations[key] = {callback, userData};
}

void Settings::UnsetCallback(system_settings_key_e key)
{
    mRegistrations.erase(key);
    if (mLocales && !WantsLocales())
        mLocales->Follow(false);
    if (!WantsTimeFormat())
        mFormat.Follow(false);
    if (!HasCallback(SYSTEM_SETTINGS_KEY_TIME_CHANGED))
        mClock.reset();
}

Locales Settings::ReadLocales()
{
    LocaleSettings& locales = GetLocales();
    locales.Refresh();
    return locales.Get();
}

bool Settings::ReadTimeFormat()
{
    ReadLocales();
    mFormat.Refresh();
    return CountsTo24();
}

LocaleSettings& Settings::GetLocales()
{
    if (mLocales)
        return *mLocales;
    mLocales.emplace(
        [this](system_settings_key_e key)
        {
            Notify(key);
            if (key == SYSTEM_SETTINGS_KEY_LOCALE_COUNTRY)
                TellTimeFormat();
        });
    mToldCountsTo24 = CountsTo24();
    return *mLocales;
}

bool Settings::HasCallback(system_settings_key_e key) const
{
    return mRegistrations.count(key) != 0;
}

bool Settings::WantsTimeFormat() const
{
    return HasCallback(SYSTEM_SETTINGS_KEY_LOCALE_TIMEFORMAT_24HOUR);
}

bool Settings::WantsLocales() const
{
    return WantsTimeFormat() || HasCallback(SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE) ||
           HasCallback(SYSTEM_SETTINGS_KEY_LOCALE_COUNTRY);
}

void Settings::Follow(system_settings_key_e key)
{
    if (key != SYSTEM_SETTINGS_KEY_TIME_CHANGED)
        GetLocales().Follow(true);
    else if (!mClock)
        mClock.emplace([this] { Notify(SYSTEM_SETTINGS_KEY_TIME_CHANGED); });
    if (key == SYSTEM_SETTINGS_KEY_LOCALE_TIMEFORMAT_24HOUR)
        mFormat.Follow(true);
}

bool Settings::CountsTo24() const
{
    return mFormat.Get().value_or(WatchPort::CountsTo24(mLocales->Get().region));
}

void Settings::TellTimeFormat()
{
    const bool countsTo24 = CountsTo24();
    if (std::exchange(mToldCountsTo24, countsTo24) != countsTo24)
        Notify(SYSTEM_SETTINGS_KEY_LOCALE_TIMEFORMAT_24HOUR);
}

void Settings::Notify(system_settings_key_e key)
{
    const auto registration = mRegistrations.find(key);
    if (registration == mRegistrations.end() || !MayCallApplication())
        return;
    const Registration called = registration->second;
    called.callback(key, called.userData);
}

} // namespace WatchPort
