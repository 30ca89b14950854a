#include "bus/Buses.h"

#include <cstdlib>

namespace WatchPort
{

namespace
{

std::string ReadVariable(const char* name)
{
    const char* value = std::getenv(name);
    return value ? value : "";
}

// Never released, as the bus may be asked for until the process ends.
BusConnection* Connect(const std::string& address)
{
    return BusConnection::Open(address, BusConnection::Clock::now() + BusConnection::kPatience)
        .release();
}

BusConnection* Living(BusConnection* bus)
{
    return bus && bus->IsConnected() ? bus : nullptr;
}
} // namespace

BusConnection* SystemBus()
{
    static BusConnection* const sBus = Connect(SystemBusAddress());
    return Living(sBus);
}

BusConnection* SessionBus()
{
    static BusConnection* const sBus = Connect(SessionBusAddress());
    return Living(sBus);
}

std::string SystemBusAddress()
{
    const std::string address = ReadVariable("DBUS_SYSTEM_BUS_ADDRESS");
    return address.empty() ? SYSTEM_BUS_DEFAULT_ADDRESS : address;
}

std::string SessionBusAddress()
{
    const std::string address = ReadVariable("DBUS_SESSION_BUS_ADDRESS");
    const std::string folder = ReadVariable("XDG_RUNTIME_DIR");
    if (!address.empty() || folder.empty())
        return address;
    return "unix:path=" + folder + "/bus";
}

} // namespace WatchPort
