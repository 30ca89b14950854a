#include "bus/BusListener.h"

#include <cstring>

namespace WatchPort
{

namespace
{
// The bus library's default for a call.
constexpr std::chrono::seconds kAnswerPatience(25);
constexpr char kOwnerChanged[] = "NameOwnerChanged";

// The bus filters out other senders' messages.
std::string SignalRule(const BusSignalAddress& address)
{
    return std::string("type='signal',sender='") + address.service + "',path='" + address.path +
           "',interface='" + address.interface + "',member='" + address.signal + "'";
}

std::string OwnerRule(const char* service)
{
    return std::string("type='signal',sender='" DBUS_SERVICE_DBUS "',path='" DBUS_PATH_DBUS
                       "',interface='" DBUS_INTERFACE_DBUS "',member='") +
           kOwnerChanged + "',arg0='" + service + "'";
}
} // namespace

BusListener::BusListener(BusConnection& bus, const BusSignalAddress& address)
    : mBus(bus), mAddress(address), mSignalRule(SignalRule(address)),
      mOwnerRule(OwnerRule(address.service))
{
    mBus.FollowLoop();
    RequireMemory(dbus_connection_add_filter(mBus.Get(), SMessageCB, this, nullptr));
    // Without an error argument the bus library does not wait for the answer.
    for (const std::string& rule : {mSignalRule, mOwnerRule})
        dbus_bus_add_match(mBus.Get(), rule.c_str(), nullptr);
    mOwnerQuestion = mBus.Call(NewCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS,
                                       "GetNameOwner", {mAddress.service}),
                               kAnswerPatience, SOwnerCB, this);
}

BusListener::~BusListener()
{
    for (const std::string& rule : {mSignalRule, mOwnerRule})
        dbus_bus_remove_match(mBus.Get(), rule.c_str(), nullptr);
    dbus_connection_remove_filter(mBus.Get(), SMessageCB, this);
}

void BusListener::Ask(BusMessage question)
{
    mQuestion = mBus.Call(std::move(question), kAnswerPatience, SAnswerCB, this);
}

void BusListener::TakeAnswer()
{
    mBus.HandleArrivedUntil([this] { return !mQuestion; });
}

void BusListener::SOwnerCB(DBusPendingCall* question, void* data)
{
    auto* self = static_cast<BusListener*>(data);
    const BusMessage answer(dbus_pending_call_steal_reply(question));
    self->mOwnerQuestion.reset();
    const char* owner = nullptr;
    if (!IsError(answer) &&
        dbus_message_get_args(answer.get(), nullptr, DBUS_TYPE_STRING, &owner, DBUS_TYPE_INVALID))
        self->mBus.WithinCallback([=] { self->mOwner = owner; });
}

void BusListener::SAnswerCB(DBusPendingCall* question, void* data)
{
    auto* self = static_cast<BusListener*>(data);
    const BusMessage answer(dbus_pending_call_steal_reply(question));
    self->mQuestion.reset();
    self->mBus.WithinCallback([&] { self->OnAnswer(answer.get()); });
}

DBusHandlerResult BusListener::SMessageCB(DBusConnection*, DBusMessage* message, void* data)
{
    auto* self = static_cast<BusListener*>(data);
    self->mBus.WithinCallback([=] { self->OnMessage(message); });
    return DBUS_HANDLER_RESULT_NOT_YET_HANDLED;
}

void BusListener::OnMessage(DBusMessage* message)
{
    if (dbus_message_is_signal(message, DBUS_INTERFACE_LOCAL, "Disconnected"))
        OnGone();
    else if (dbus_message_is_signal(message, DBUS_INTERFACE_DBUS, kOwnerChanged) &&
             dbus_message_has_sender(message, DBUS_SERVICE_DBUS))
        OnOwnerChanged(message);
    else if (dbus_message_is_signal(message, mAddress.interface, mAddress.signal) &&
             dbus_message_has_path(message, mAddress.path) &&
             dbus_message_has_sender(message, mOwner.c_str()))
        OnSignal(message);
}

void BusListener::OnOwnerChanged(DBusMessage* message)
{
    const char* service = nullptr;
    const char* before = nullptr;
    const char* now = nullptr;
    if (!dbus_message_get_args(message, nullptr, DBUS_TYPE_STRING, &service, DBUS_TYPE_STRING,
                               &before, DBUS_TYPE_STRING, &now, DBUS_TYPE_INVALID) ||
        std::strcmp(service, mAddress.service) != 0)
        return;
    mOwner = now;
    if (mOwner.empty())
        OnGone();
    else
        OnAppeared();
}

} // namespace WatchPort
