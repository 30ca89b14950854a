#include "system-settings/PortalClockFormat.h"

#include "base/CallBack.h"
#include "bus/Buses.h"

#include <cstring>
#include <string_view>
#include <utility>

namespace WatchPort
{

namespace
{
constexpr char kService[] = "org.freedesktop.portal.Desktop";
constexpr char kPath[] = "/org/freedesktop/portal/desktop";
constexpr char kInterface[] = "org.freedesktop.portal.Settings";
constexpr char kNamespace[] = "org.gnome.desktop.interface";
constexpr char kKey[] = "clock-format";

BusMessage NewQuestion(const char* method)
{
    return NewCall(kService, kPath, kInterface, method, {kNamespace, kKey});
}

std::optional<bool> Parse(DBusMessageIter* value)
{
    if (!HasSignature(value, "s"))
        return std::nullopt;
    const std::string_view format = ReadText(value);
    if (format != "24h" && format != "12h")
        return std::nullopt;
    return format == "24h";
}

// The portal's first method wraps the value once more than the one that replaced it.
std::optional<bool> ParseAnswer(DBusMessage* answer)
{
    DBusMessageIter value;
    if (!GetVariant(answer, value))
        return std::nullopt;
    if (HasSignature(&value, "v"))
        value = Enter(&value);
    return Parse(&value);
}
} // namespace

std::unique_ptr<PortalClockFormat> PortalClockFormat::Follow(Callback onAnswer)
{
    BusConnection* bus = SessionBus();
    if (!bus)
        return nullptr;
    return std::unique_ptr<PortalClockFormat>(new PortalClockFormat(*bus, std::move(onAnswer)));
}

PortalClockFormat::PortalClockFormat(BusConnection& bus, Callback onAnswer)
    : BusListener(bus, {kService, kPath, kInterface, "SettingChanged"}),
      mOnAnswer(std::move(onAnswer))
{
    OnAppeared();
}

void PortalClockFormat::OnAppeared()
{
    mHasAskedTheOldWay = false;
    Ask(NewQuestion("ReadOne"));
}

void PortalClockFormat::OnAnswer(DBusMessage* answer)
{
    if (dbus_message_is_error(answer, DBUS_ERROR_UNKNOWN_METHOD) &&
        !std::exchange(mHasAskedTheOldWay, true))
        Ask(NewQuestion("Read"));
    else
        CallBack(mOnAnswer, ParseAnswer(answer));
}

void PortalClockFormat::OnSignal(DBusMessage* signal)
{
    DBusMessageIter iter;
    if (!dbus_message_has_signature(signal, "ssv") || !dbus_message_iter_init(signal, &iter) ||
        std::strcmp(ReadText(&iter), kNamespace) != 0 || std::strcmp(ReadText(&iter), kKey) != 0)
        return;
    DBusMessageIter value = Enter(&iter);
    CallBack(mOnAnswer, Parse(&value));
}

void PortalClockFormat::OnGone()
{
    CallBack(mOnAnswer, std::nullopt);
}

} // namespace WatchPort
