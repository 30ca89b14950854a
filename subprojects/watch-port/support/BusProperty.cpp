#include "support/BusProperty.h"

#include "support/QuietLog.h"
#include "support/SystemBus.h"

#include <cstdlib>
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

// Asked before taking arguments out: Eldbus reports a mismatch as an error of the program.
bool HasSignature(const Eldbus_Message* message, const char* signature)
{
    return std::strcmp(eldbus_message_signature_get(message), signature) == 0;
}

bool HasSignature(Eldbus_Message_Iter* value, const char* signature)
{
    char* actual = eldbus_message_iter_signature_get(value);
    const bool isEqual = actual && std::strcmp(actual, signature) == 0;
    std::free(actual);
    return isEqual;
}

// Null for an error and for an answer of another type.
Eldbus_Message_Iter* GetAnswer(const Eldbus_Message* reply, const char* signature)
{
    Eldbus_Message_Iter* value = nullptr;
    if (eldbus_message_error_get(reply, nullptr, nullptr) || !HasSignature(reply, "v") ||
        !eldbus_message_arguments_get(reply, "v", &value))
        return nullptr;
    return HasSignature(value, signature) ? value : nullptr;
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
    Eldbus_Message* reply = eldbus_proxy_send_and_block(proxy, NewQuestion(address), timeoutMs);
    Eldbus_Message_Iter* value = reply ? GetAnswer(reply, address.mSignature) : nullptr;
    if (value)
        take(value);
    if (reply)
        eldbus_message_unref(reply);
    eldbus_proxy_unref(proxy);
    eldbus_object_unref(object);
    return value != nullptr;
}

BusProperty::BusProperty(Eldbus_Connection* bus, const BusPropertyAddress& address,
                         ValueCallback onValue, GoneCallback onGone)
    : mBus(bus), mAddress(address), mOnValue(std::move(onValue)), mOnGone(std::move(onGone))
{
    mChanges = eldbus_signal_handler_add(mBus, mAddress.mService, mAddress.mPath, kProperties,
                                         "PropertiesChanged", SPropertiesChangedCB, this);
    eldbus_name_owner_changed_callback_add(mBus, mAddress.mService, SOwnerChangedCB, this,
                                           EINA_FALSE);
    eldbus_connection_event_callback_add(mBus, ELDBUS_CONNECTION_EVENT_DISCONNECTED,
                                         SDisconnectedCB, this);
    Ask();
}

BusProperty::~BusProperty()
{
    if (mQuestion)
        eldbus_pending_cancel(std::exchange(mQuestion, nullptr));
    eldbus_connection_event_callback_del(mBus, ELDBUS_CONNECTION_EVENT_DISCONNECTED,
                                         SDisconnectedCB, this);
    eldbus_name_owner_changed_callback_del(mBus, mAddress.mService, SOwnerChangedCB, this);
    eldbus_signal_handler_del(mChanges);
}

void BusProperty::Ask()
{
    if (mQuestion)
        eldbus_pending_cancel(std::exchange(mQuestion, nullptr));
    mQuestion = eldbus_connection_send(mBus, NewQuestion(mAddress), SReplyCB, this, -1);
}

void BusProperty::TellValue(Eldbus_Message_Iter* value)
{
    const ValueCallback onValue = mOnValue;
    onValue(value);
}

void BusProperty::TellGone()
{
    const GoneCallback onGone = mOnGone;
    onGone();
}

void BusProperty::SOwnerChangedCB(void* data, const char* /*service*/, const char* /*before*/,
                                  const char* now)
{
    auto* self = static_cast<BusProperty*>(data);
    if (*now)
        self->Ask();
    else
        self->TellGone();
}

void BusProperty::SReplyCB(void* data, const Eldbus_Message* reply, Eldbus_Pending* pending)
{
    auto* self = static_cast<BusProperty*>(data);
    // Eldbus answers a cancelled question itself, at once.
    if (pending != self->mQuestion)
        return;
    self->mQuestion = nullptr;
    Eldbus_Message_Iter* value = GetAnswer(reply, self->mAddress.mSignature);
    if (value)
        self->TellValue(value);
    else
        self->TellGone();
}

void BusProperty::SPropertiesChangedCB(void* data, const Eldbus_Message* message)
{
    static_cast<BusProperty*>(data)->OnPropertiesChanged(message);
}

void BusProperty::OnPropertiesChanged(const Eldbus_Message* message)
{
    const char* interface = nullptr;
    Eldbus_Message_Iter* changed = nullptr;
    Eldbus_Message_Iter* invalidated = nullptr;
    if (!HasSignature(message, "sa{sv}as") ||
        !eldbus_message_arguments_get(message, "sa{sv}as", &interface, &changed, &invalidated) ||
        std::strcmp(interface, mAddress.mInterface) != 0)
        return;

    const char* name = nullptr;
    while (eldbus_message_iter_get_and_next(invalidated, 's', &name))
    {
        if (std::strcmp(name, mAddress.mProperty) == 0)
            Ask();
    }
    Eldbus_Message_Iter* entry = nullptr;
    while (eldbus_message_iter_get_and_next(changed, 'e', &entry))
    {
        Eldbus_Message_Iter* value = nullptr;
        if (!eldbus_message_iter_arguments_get(entry, "sv", &name, &value) ||
            std::strcmp(name, mAddress.mProperty) != 0)
            continue;
        if (HasSignature(value, mAddress.mSignature))
            TellValue(value);
        return;
    }
}

void BusProperty::SDisconnectedCB(void* data, Eldbus_Connection* /*bus*/, void* /*event*/)
{
    static_cast<BusProperty*>(data)->TellGone();
}
