#include "system-settings/PortalClockFormat.h"

#include "support/BusSignature.h"
#include "support/Buses.h"

#include <cstring>
#include <string_view>
#include <utility>

namespace
{
constexpr char kService[] = "org.freedesktop.portal.Desktop";
constexpr char kPath[] = "/org/freedesktop/portal/desktop";
constexpr char kInterface[] = "org.freedesktop.portal.Settings";
constexpr char kNamespace[] = "org.gnome.desktop.interface";
constexpr char kKey[] = "clock-format";

Eldbus_Message* NewQuestion(const char* method)
{
    Eldbus_Message* question = eldbus_message_method_call_new(kService, kPath, kInterface, method);
    eldbus_message_arguments_append(question, "ss", kNamespace, kKey);
    return question;
}

bool IsUnknownMethod(const Eldbus_Message* answer)
{
    const char* name = nullptr;
    return eldbus_message_error_get(answer, &name, nullptr) &&
           std::strcmp(name, "org.freedesktop.DBus.Error.UnknownMethod") == 0;
}

std::optional<bool> Parse(Eldbus_Message_Iter* value)
{
    if (!HasSignature(value, "s"))
        return std::nullopt;
    const char* text = nullptr;
    eldbus_message_iter_basic_get(value, &text);
    const std::string_view format = text;
    if (format != "24h" && format != "12h")
        return std::nullopt;
    return format == "24h";
}

// The portal's first method wraps the value once more than the one that replaced it.
std::optional<bool> ParseAnswer(const Eldbus_Message* answer)
{
    Eldbus_Message_Iter* value = GetVariant(answer);
    Eldbus_Message_Iter* inner = nullptr;
    if (value && HasSignature(value, "v") && eldbus_message_iter_arguments_get(value, "v", &inner))
        value = inner;
    return value ? Parse(value) : std::nullopt;
}
} // namespace

std::unique_ptr<PortalClockFormat> PortalClockFormat::Follow(Callback onAnswer)
{
    Eldbus_Connection* bus = SessionBus();
    if (!bus)
        return nullptr;
    return std::unique_ptr<PortalClockFormat>(new PortalClockFormat(bus, std::move(onAnswer)));
}

PortalClockFormat::PortalClockFormat(Eldbus_Connection* bus, Callback onAnswer)
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

void PortalClockFormat::OnAnswer(const Eldbus_Message* answer)
{
    if (IsUnknownMethod(answer) && !std::exchange(mHasAskedTheOldWay, true))
        Ask(NewQuestion("Read"));
    else
        Tell(ParseAnswer(answer));
}

void PortalClockFormat::OnSignal(const Eldbus_Message* signal)
{
    const char* space = nullptr;
    const char* key = nullptr;
    Eldbus_Message_Iter* value = nullptr;
    if (!HasSignature(signal, "ssv") ||
        !eldbus_message_arguments_get(signal, "ssv", &space, &key, &value) ||
        std::strcmp(space, kNamespace) != 0 || std::strcmp(key, kKey) != 0)
        return;
    Tell(Parse(value));
}

void PortalClockFormat::OnGone()
{
    Tell(std::nullopt);
}

void PortalClockFormat::Tell(std::optional<bool> countsTo24)
{
    const Callback onAnswer = mOnAnswer;
    onAnswer(countsTo24);
}
