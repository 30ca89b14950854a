#include "system-settings/PortalSettings.h"

#include "base/CallBack.h"
#include "bus/Buses.h"

#include <cstring>
#include <utility>

namespace WatchPort
{

namespace
{
constexpr char kService[] = "org.freedesktop.portal.Desktop";
constexpr char kPath[] = "/org/freedesktop/portal/desktop";
constexpr char kInterface[] = "org.freedesktop.portal.Settings";
} // namespace

std::unique_ptr<PortalSettings> PortalSettings::Follow(std::vector<PortalSetting> settings,
                                                       std::function<void()> onAnswer)
{
    BusConnection* bus = SessionBus();
    if (!bus)
        return nullptr;
    return std::unique_ptr<PortalSettings>(
        new PortalSettings(*bus, std::move(settings), std::move(onAnswer)));
}

PortalSettings::PortalSettings(BusConnection& bus, std::vector<PortalSetting> settings,
                               std::function<void()> onAnswer)
    : BusListener(bus, {kService, kPath, kInterface, "SettingChanged"}),
      mSettings(std::move(settings)), mOnAnswer(std::move(onAnswer))
{
    Ask(NewQuestion());
}

// One question for all; the methods for a single one also differ between the portal's versions.
BusMessage PortalSettings::NewQuestion() const
{
    BusMessage question = NewCall(kService, kPath, kInterface, "ReadAll");
    std::vector<const char*> spaces;
    spaces.reserve(mSettings.size());
    for (const PortalSetting& setting : mSettings)
        spaces.push_back(setting.space);
    const char** const array = spaces.data();
    RequireMemory(dbus_message_append_args(question.get(), DBUS_TYPE_ARRAY, DBUS_TYPE_STRING,
                                           &array, static_cast<int>(spaces.size()),
                                           DBUS_TYPE_INVALID));
    return question;
}

void PortalSettings::OnAppeared()
{
    Ask(NewQuestion());
}

void PortalSettings::OnAnswer(DBusMessage* answer)
{
    DBusMessageIter iter;
    if (dbus_message_get_type(answer) == DBUS_MESSAGE_TYPE_METHOD_RETURN &&
        dbus_message_has_signature(answer, "a{sa{sv}}") && dbus_message_iter_init(answer, &iter))
    {
        DBusMessageIter spaces = Enter(&iter);
        while (dbus_message_iter_get_arg_type(&spaces) == DBUS_TYPE_DICT_ENTRY)
        {
            DBusMessageIter space = Enter(&spaces);
            const char* const name = ReadText(&space);
            Take(name, Enter(&space));
        }
    }
    CallBack(mOnAnswer);
}

void PortalSettings::Take(const char* space, DBusMessageIter values)
{
    while (dbus_message_iter_get_arg_type(&values) == DBUS_TYPE_DICT_ENTRY)
    {
        DBusMessageIter entry = Enter(&values);
        const char* const key = ReadText(&entry);
        Take(space, key, Enter(&entry));
    }
}

bool PortalSettings::Take(const char* space, const char* key, DBusMessageIter value)
{
    bool isWanted = false;
    for (const PortalSetting& setting : mSettings)
    {
        if (std::strcmp(setting.space, space) != 0 || std::strcmp(setting.key, key) != 0)
            continue;
        isWanted = true;
        setting.take(&value);
    }
    return isWanted;
}

void PortalSettings::OnSignal(DBusMessage* signal)
{
    DBusMessageIter iter;
    if (!dbus_message_has_signature(signal, "ssv") || !dbus_message_iter_init(signal, &iter))
        return;
    const char* const space = ReadText(&iter);
    const char* const key = ReadText(&iter);
    if (Take(space, key, Enter(&iter)))
        CallBack(mOnAnswer);
}

void PortalSettings::OnGone()
{
    CallBack(mOnAnswer);
}

} // namespace WatchPort
