#include "support/Buses.h"

#include "support/BusProbe.h"
#include "support/QuietLog.h"

#include <Ecore.h>
#include <cstdlib>

namespace
{
std::string ReadVariable(const char* name)
{
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string SystemBusAddress()
{
    const std::string address = ReadVariable("DBUS_SYSTEM_BUS_ADDRESS");
    return address.empty() ? SYSTEM_BUS_DEFAULT_ADDRESS : address;
}

// A connection that is never closed, as the bus may be asked for until the process ends.
class Bus
{
public:
    explicit Bus(const std::string& address)
        : mConnection(BusProbe(address).IsAnswering() ? Connect(address) : nullptr)
    {
        if (mConnection)
            eldbus_connection_event_callback_add(mConnection, ELDBUS_CONNECTION_EVENT_DISCONNECTED,
                                                 SDisconnectedCB, this);
    }
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;

    Eldbus_Connection* Get() const { return mHasDied ? nullptr : mConnection; }

private:
    // Ecore's own listeners of the system bus are kept out: they report a missing bus as an error
    // and crash on a malformed PropertiesChanged. The connection is made by address, for Eldbus
    // ends the main loop when what it knows as the session bus dies, and starts one where there
    // is none.
    static Eldbus_Connection* Connect(const std::string& address)
    {
        ecore_app_no_system_modules();
        if (eldbus_init() <= 0)
            return nullptr;
        const QuietLog bus("eldbus");
        const QuietLog safety("eina_safety");
        return eldbus_address_connection_get(address.c_str());
    }

    static void SDisconnectedCB(void* data, Eldbus_Connection* /*bus*/, void* /*event*/)
    {
        static_cast<Bus*>(data)->mHasDied = true;
    }

    Eldbus_Connection* const mConnection;
    bool mHasDied = false;
};
} // namespace

Eldbus_Connection* SystemBus()
{
    static const auto& sBus = *new Bus(SystemBusAddress());
    return sBus.Get();
}

Eldbus_Connection* SessionBus()
{
    static const auto& sBus = *new Bus(SessionBusAddress());
    return sBus.Get();
}

std::string SessionBusAddress()
{
    const std::string address = ReadVariable("DBUS_SESSION_BUS_ADDRESS");
    const std::string folder = ReadVariable("XDG_RUNTIME_DIR");
    if (!address.empty() || folder.empty())
        return address;
    return "unix:path=" + folder + "/bus";
}
