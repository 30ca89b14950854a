#include "support/BusProperty.h"

#include "support/BusSignature.h"
#include "support/Buses.h"
#include "support/QuietLog.h"

#include <cstring>
#include <utility>

namespace
{
constexpr char kProperties[] = "org.freedesktop.DBus.Properties";

Eldbus_Message* NewQuestion(const BusPropertyAddress& address)
{
    Eldbus_Message* question =
        eldbus_message_method_call_new(address.mService, address.mPath, kProperties, "Get");
    eldbus_message_arguments_append(question, "ss", address.mInterface, address.mProperty);
    return question;
}

// Null for an error and for an answer of another type.
Eldbus_Message_Iter* GetValue(const Eldbus_Message* answer, const char* signature)
{
    Eldbus_Message_Iter* value = GetVariant(answer);
    return value && HasSignature(value, signature) ? value : nullptr;
}

bool IsIn(Eldbus_Message_Iter* names, const char* wanted)
{
    const char* name = nullptr;
    while (eldbus_message_iter_get_and_next(names, 's', &name))
    {
        if (std::strcmp(name, wanted) == 0)
            return true;
    }
    return false;
}

Eldbus_Message_Iter* Find(Eldbus_Message_Iter* values, const char* wanted)
{
    Eldbus_Message_Iter* entry = nullptr;
    while (eldbus_message_iter_get_and_next(values, 'e', &entry))
    {
        const char* name = nullptr;
        Eldbus_Message_Iter* value = nullptr;
        if (eldbus_message_iter_arguments_get(entry, "sv", &name, &value) &&
            std::strcmp(name, wanted) == 0)
            return value;
    }
    return nullptr;
}
} // namespace

std::unique_ptr<BusProperty> BusProperty::Follow(const BusPropertyAddress& address,
                                                 ValueCallback onValue, GoneCallback onGone)
{
    Eldbus_Connection* bus = SystemBus();
    if (!bus)
        return nullptr;
    return std::unique_ptr<BusProperty>(
        new BusProperty(bus, address, std::move(onValue), std::move(onGone)));
}

bool BusProperty::Read(const BusPropertyAddress& address, double timeoutMs,
                       const ValueCallback& take)
{
    Eldbus_Connection* bus = SystemBus();
    if (!bus)
        return false;
    const QuietLog safety("eina_safety");
    Eldbus_Object* object = eldbus_object_get(bus, address.mService, address.mPath);
    Eldbus_Proxy* proxy = eldbus_proxy_get(object, kProperties);
    Eldbus_Message* answer = eldbus_proxy_send_and_block(proxy, NewQuestion(address), timeoutMs);
    Eldbus_Message_Iter* value = answer ? GetValue(answer, address.mSignature) : nullptr;
    if (value)
        take(value);
    if (answer)
        eldbus_message_unref(answer);
    eldbus_proxy_unref(proxy);
    eldbus_object_unref(object);
    return value != nullptr;
}

BusProperty::BusProperty(Eldbus_Connection* bus, const BusPropertyAddress& address,
                         ValueCallback onValue, GoneCallback onGone)
    : BusListener(bus, {address.mService, address.mPath, kProperties, "PropertiesChanged"}),
      mAddress(address), mOnValue(std::move(onValue)), mOnGone(std::move(onGone))
{
    Ask(NewQuestion(mAddress));
}

void BusProperty::OnAppeared()
{
    Ask(NewQuestion(mAddress));
}

void BusProperty::OnAnswer(const Eldbus_Message* answer)
{
    Eldbus_Message_Iter* value = GetValue(answer, mAddress.mSignature);
    if (value)
        TellValue(value);
    else
        OnGone();
}

void BusProperty::OnSignal(const Eldbus_Message* signal)
{
    const char* interface = nullptr;
    Eldbus_Message_Iter* changed = nullptr;
    Eldbus_Message_Iter* invalidated = nullptr;
    if (!HasSignature(signal, "sa{sv}as") ||
        !eldbus_message_arguments_get(signal, "sa{sv}as", &interface, &changed, &invalidated) ||
        std::strcmp(interface, mAddress.mInterface) != 0)
        return;
    // An answer that is still to come is newer than this signal, for messages keep their order.
    if (IsIn(invalidated, mAddress.mProperty) && !IsAsking())
        Ask(NewQuestion(mAddress));
    Eldbus_Message_Iter* value = Find(changed, mAddress.mProperty);
    if (value && HasSignature(value, mAddress.mSignature))
        TellValue(value);
}

void BusProperty::OnGone()
{
    const GoneCallback onGone = mOnGone;
    onGone();
}

void BusProperty::TellValue(Eldbus_Message_Iter* value)
{
    const ValueCallback onValue = mOnValue;
    onValue(value);
}
