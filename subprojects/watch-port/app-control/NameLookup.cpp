#include "app-control/NameLookup.h"

#include "support/BusProbe.h"
#include "support/Buses.h"

#include <optional>

namespace
{
std::optional<bool> HasOwner(const BusProbe& bus, const std::string& name)
{
    const BusProbe::Message answer = bus.Ask("NameHasOwner", name);
    dbus_bool_t has = FALSE;
    if (!answer ||
        !dbus_message_get_args(answer.get(), nullptr, DBUS_TYPE_BOOLEAN, &has, DBUS_TYPE_INVALID))
        return std::nullopt;
    return has != FALSE;
}

std::optional<bool> IsActivatable(const BusProbe& bus, const std::string& name)
{
    const BusProbe::Message answer = bus.Ask("ListActivatableNames");
    char** names = nullptr;
    int count = 0;
    if (!answer || !dbus_message_get_args(answer.get(), nullptr, DBUS_TYPE_ARRAY, DBUS_TYPE_STRING,
                                          &names, &count, DBUS_TYPE_INVALID))
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
    const BusProbe bus(SessionBusAddress());
    if (!bus.IsAnswering())
        return BusAnswer::NoBus;
    auto known = HasOwner(bus, name);
    if (known == false)
        known = IsActivatable(bus, name);
    if (!known)
        return BusAnswer::NoBus;
    return *known ? BusAnswer::Known : BusAnswer::Unknown;
}
