#include "system-settings/SystemSettings.h"

#include "system-settings/Catalogues.h"

SystemSettings& SystemSettings::GetInstance()
{
    static auto& sInstance = *new SystemSettings;
    return sInstance;
}

void SystemSettings::SetCallback(system_settings_key_e key, system_settings_changed_cb callback,
                                 void* userData)
{
    if (callback)
        mRegistrations[key] = {callback, userData};
    else
        mRegistrations.erase(key);
    WatchWhatIsWanted();
}

Locales SystemSettings::ReadLocales()
{
    LocaleSettings& locales = GetLocales();
    LeaveLocaleC();
    locales.Refresh();
    return locales.Get();
}

LocaleSettings& SystemSettings::GetLocales()
{
    if (!mLocales)
        mLocales.emplace([this](system_settings_key_e key) { Notify(key); });
    return *mLocales;
}

bool SystemSettings::HasCallback(system_settings_key_e key) const
{
    return mRegistrations.count(key) != 0;
}

void SystemSettings::WatchWhatIsWanted()
{
    const bool wantsLocales = HasCallback(SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE) ||
                              HasCallback(SYSTEM_SETTINGS_KEY_LOCALE_COUNTRY) ||
                              HasCallback(SYSTEM_SETTINGS_KEY_LOCALE_TIMEFORMAT_24HOUR);
    if (wantsLocales)
        GetLocales().Follow(true);
    else if (mLocales)
        mLocales->Follow(false);

    if (!HasCallback(SYSTEM_SETTINGS_KEY_TIME_CHANGED))
        mClock.reset();
    else if (!mClock)
        mClock.emplace([this] { Notify(SYSTEM_SETTINGS_KEY_TIME_CHANGED); });
}

void SystemSettings::Notify(system_settings_key_e key)
{
    const auto registration = mRegistrations.find(key);
    if (registration == mRegistrations.end())
        return;
    const Registration called = registration->second;
    called.mCallback(key, called.mUserData);
}
