#include "bus/BusProperty.h"

#include "base/CallBack.h"
#include "base/Termination.h"
#include "bus/Buses.h"

#include <cstring>
#include <utility>

namespace WatchPort
{

namespace
{

constexpr char kProperties[] = "org.freedesktop.DBus.Properties";

BusMessage NewQuestion(const BusPropertyAddress& address)
{
    return NewCall(address.service, address.path, kProperties, "Get",
                   {address.interface, address.property});
}

// False for an error and for an answer of another type.
bool GetValue(DBusMessage* answer, const char* signature, DBusMessageIter& value)
{
    return GetVariant(answer, value) && HasSignature(&value, signature);
}

bool IsIn(DBusMessageIter names, const char* wanted)
{
    while (dbus_message_iter_get_arg_type(&names) == DBUS_TYPE_STRING)
    {
        if (std::strcmp(ReadText(&names), wanted) == 0)
            return true;
    }
    return false;
}

bool Find(DBusMessageIter values, const char* wanted, DBusMessageIter& value)
{
    while (dbus_message_iter_get_arg_type(&values) == DBUS_TYPE_DICT_ENTRY)
    {
        DBusMessageIter entry = Enter(&values);
        const bool isWanted = std::strcmp(ReadText(&entry), wanted) == 0;
        value = Enter(&entry);
        if (isWanted)
            return true;
    }
    return false;
}
} // namespace

std::unique_ptr<BusProperty> BusProperty::Follow(const BusPropertyAddress& address,
                                                 ValueCallback onValue, GoneCallback onGone)
{
    BusConnection* bus = SystemBus();
    if (!bus)
        return nullptr;
    return std::unique_ptr<BusProperty>(
        new BusProperty(*bus, address, std::move(onValue), std::move(onGone)));
}

bool BusProperty::Read(const BusPropertyAddress& address, std::chrono::milliseconds patience,
                       const ValueCallback& take)
{
    // A bus that keeps silent is waited for once in the life of the process.
    if (!SystemBus())
        return false;
    // On that connection the answer would come by a dispatch, which calls everybody's callbacks.
    const auto deadline = BusConnection::Clock::now() + patience;
    const Termination termination;
    const auto bus = BusConnection::Open(SystemBusAddress(), deadline);
    const BusMessage answer = bus ? bus->Ask(NewQuestion(address), deadline) : nullptr;
    DBusMessageIter value;
    if (!answer || !GetValue(answer.get(), address.signature, value))
        return false;
    take(&value);
    return true;
}

BusProperty::BusProperty(BusConnection& bus, const BusPropertyAddress& address,
                         ValueCallback onValue, GoneCallback onGone)
    : BusListener(bus, {address.service, address.path, kProperties, "PropertiesChanged"}),
      mAddress(address), mOnValue(std::move(onValue)), mOnGone(std::move(onGone))
{
    Ask(NewQuestion(mAddress));
}

void BusProperty::OnAppeared()
{
    Ask(NewQuestion(mAddress));
}

void BusProperty::OnAnswer(DBusMessage* answer)
{
    DBusMessageIter value;
    if (GetValue(answer, mAddress.signature, value))
        CallBack(mOnValue, &value);
    else
        OnGone();
}

void BusProperty::OnSignal(DBusMessage* signal)
{
    DBusMessageIter iter;
    if (!dbus_message_has_signature(signal, "sa{sv}as") || !dbus_message_iter_init(signal, &iter) ||
        std::strcmp(ReadText(&iter), mAddress.interface) != 0)
        return;
    const DBusMessageIter changed = Enter(&iter);
    const DBusMessageIter invalidated = Enter(&iter);
    // A pending answer is newer than this signal: messages keep their order.
    if (IsIn(invalidated, mAddress.property) && !IsAsking())
        Ask(NewQuestion(mAddress));
    DBusMessageIter value;
    if (Find(changed, mAddress.property, value) && HasSignature(&value, mAddress.signature))
        CallBack(mOnValue, &value);
}

void BusProperty::OnGone()
{
    CallBack(mOnGone);
}

} // namespace WatchPort
