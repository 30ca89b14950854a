#include "application/access/ScreenReader.h"

#include "bus/Buses.h"

#include <string_view>
#include <utility>

namespace WatchPort
{

namespace
{
constexpr char kService[] = "org.a11y.Bus";
constexpr char kPath[] = "/org/a11y/bus";
constexpr char kStatus[] = "org.a11y.Status";
constexpr char kPropertiesOfStatus[] = "org.freedesktop.DBus.Properties";

BusMessage NewQuietCall(const char* interface, const char* method,
                        std::initializer_list<std::string> texts)
{
    BusMessage call = NewCall(kService, kPath, interface, method, texts);
    dbus_message_set_auto_start(call.get(), FALSE);
    return call;
}

bool IsReading(std::string_view property)
{
    return property == "ScreenReaderEnabled" || property == "IsEnabled";
}

// Whether one of the properties of "a{sv}" says so.
bool HasReader(DBusMessage* answer)
{
    DBusMessageIter iter;
    if (!dbus_message_has_signature(answer, "a{sv}") || !dbus_message_iter_init(answer, &iter))
        return false;
    bool reads = false;
    DBusMessageIter list = Enter(&iter);
    while (dbus_message_iter_get_arg_type(&list) == DBUS_TYPE_DICT_ENTRY)
    {
        DBusMessageIter entry = Enter(&list);
        const char* const name = ReadText(&entry);
        DBusMessageIter value = Enter(&entry);
        dbus_bool_t isSet = FALSE;
        if (IsReading(name) && dbus_message_iter_get_arg_type(&value) == DBUS_TYPE_BOOLEAN)
            dbus_message_iter_get_basic(&value, &isSet);
        reads = reads || isSet;
    }
    return reads;
}

std::string ReadAddress(DBusMessage* answer)
{
    const char* address = nullptr;
    if (dbus_message_get_type(answer) != DBUS_MESSAGE_TYPE_METHOD_RETURN ||
        !dbus_message_get_args(answer, nullptr, DBUS_TYPE_STRING, &address, DBUS_TYPE_INVALID))
        return {};
    const std::string_view given = address;
    const bool isSocket = given.rfind("unix:", 0) == 0 && given.find(';') == std::string_view::npos;
    return isSocket ? address : "";
}
} // namespace

std::unique_ptr<ScreenReader> ScreenReader::Follow(Callback onAnswer)
{
    BusConnection* bus = SessionBus();
    if (!bus)
        return nullptr;
    return std::unique_ptr<ScreenReader>(new ScreenReader(*bus, std::move(onAnswer)));
}

ScreenReader::ScreenReader(BusConnection& bus, Callback onAnswer)
    : BusListener(bus, {kService, kPath, kPropertiesOfStatus, "PropertiesChanged"}),
      mOnAnswer(std::move(onAnswer))
{
    OnAppeared();
}

void ScreenReader::OnAppeared()
{
    mIsAskingAddress = false;
    Ask(NewQuietCall(kPropertiesOfStatus, "GetAll", {kStatus}));
}

void ScreenReader::AskAddress()
{
    mIsAskingAddress = true;
    Ask(NewQuietCall(kService, "GetAddress", {}));
}

void ScreenReader::OnAnswer(DBusMessage* answer)
{
    if (mIsAskingAddress)
        mOnAnswer(ReadAddress(answer));
    else if (HasReader(answer))
        AskAddress();
    else
        mOnAnswer("");
}

// The answer to a question that is on its way comes after this signal, and is newer.
void ScreenReader::OnSignal(DBusMessage*)
{
    if (mIsAskingAddress || !IsAsking())
        OnAppeared();
}

void ScreenReader::OnGone()
{
    mOnAnswer("");
}

} // namespace WatchPort
