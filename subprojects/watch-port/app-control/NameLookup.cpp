#include "app-control/NameLookup.h"

#include "base/Termination.h"
#include "bus/Buses.h"

#include <optional>

namespace WatchPort
{

namespace
{

constexpr std::chrono::seconds kNamePatience(1);

BusMessage NewQuestion(const char* method, std::initializer_list<std::string> texts)
{
    return NewCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, method, texts);
}

std::optional<bool> HasOwner(BusConnection& bus, const std::string& name,
                             BusConnection::Clock::time_point deadline)
{
    const BusMessage answer = bus.Ask(NewQuestion("NameHasOwner", {name}), deadline);
    dbus_bool_t has = FALSE;
    if (IsError(answer) ||
        !dbus_message_get_args(answer.get(), nullptr, DBUS_TYPE_BOOLEAN, &has, DBUS_TYPE_INVALID))
        return std::nullopt;
    return has != FALSE;
}

std::optional<bool> IsActivatable(BusConnection& bus, const std::string& name,
                                  BusConnection::Clock::time_point deadline)
{
    const BusMessage answer = bus.Ask(NewQuestion("ListActivatableNames", {}), deadline);
    char** names = nullptr;
    int count = 0;
    if (IsError(answer) ||
        !dbus_message_get_args(answer.get(), nullptr, DBUS_TYPE_ARRAY, DBUS_TYPE_STRING, &names,
                               &count, DBUS_TYPE_INVALID))
        return std::nullopt;
    bool found = false;
    for (int i = 0; i < count; ++i)
        found = found || name == names[i];
    dbus_free_string_array(names);
    return found;
}
} // namespace

BusAnswer AskSessionBus(const std::string& name)
{
    const auto deadline = BusConnection::Clock::now() + BusConnection::kPatience;
    // From the first question to the last: one signal ends them all.
    const Termination termination;
    const auto bus = BusConnection::Open(SessionBusAddress(), deadline);
    if (!bus)
        return BusAnswer::NoBus;
    auto known = HasOwner(*bus, name, deadline);
    if (known == false)
        known = IsActivatable(*bus, name, deadline);
    if (!known)
        return BusAnswer::NoBus;
    return *known ? BusAnswer::Known : BusAnswer::Unknown;
}

NameAnswer RequestName(BusConnection& bus, const std::string& name)
{
    BusMessage question = NewQuestion("RequestName", {name});
    const dbus_uint32_t flags = DBUS_NAME_FLAG_DO_NOT_QUEUE;
    RequireMemory(
        dbus_message_append_args(question.get(), DBUS_TYPE_UINT32, &flags, DBUS_TYPE_INVALID));
    const BusMessage answer =
        bus.Ask(std::move(question), BusConnection::Clock::now() + kNamePatience);
    dbus_uint32_t code = 0;
    if (IsError(answer) ||
        !dbus_message_get_args(answer.get(), nullptr, DBUS_TYPE_UINT32, &code, DBUS_TYPE_INVALID))
    {
        // The name may still come, to a process that would not hear what is sent to it.
        bus.Post(NewQuestion("ReleaseName", {name}));
        return NameAnswer::NoAnswer;
    }
    return code == DBUS_REQUEST_NAME_REPLY_PRIMARY_OWNER ||
                   code == DBUS_REQUEST_NAME_REPLY_ALREADY_OWNER
               ? NameAnswer::Owned
               : NameAnswer::Taken;
}

} // namespace WatchPort
