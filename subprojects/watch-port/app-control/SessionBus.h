#ifndef WATCH_PORT_APP_CONTROL_SESSION_BUS_H
#define WATCH_PORT_APP_CONTROL_SESSION_BUS_H

#include <Eldbus.h>
#include <optional>
#include <string>

/** A share in the process's connection to the session bus, held as long as the object lives. */
class SessionBus
{
public:
    /** Connects when the environment names a bus; a bus is never started for that. */
    SessionBus();
    ~SessionBus();
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;

    bool IsConnected() const { return mConnection != nullptr; }
    Eldbus_Connection* Connection() const { return mConnection; }

    /**
     * Tells whether somebody owns the name or the bus can start who does; nothing when the bus
     * does not answer within two seconds.
     */
    std::optional<bool> Knows(const std::string& name) const;

private:
    Eldbus_Connection* mConnection = nullptr;
};

#endif
