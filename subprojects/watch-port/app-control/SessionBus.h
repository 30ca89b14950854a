#ifndef WATCH_PORT_APP_CONTROL_SESSION_BUS_H
#define WATCH_PORT_APP_CONTROL_SESSION_BUS_H

#include <Eldbus.h>

/** A share in the process's connection to the session bus, held as long as the object lives. */
class SessionBus
{
public:
    /** Connects; only for a bus that is known to answer. */
    SessionBus();
    ~SessionBus();
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;

    bool IsConnected() const { return mConnection != nullptr; }
    Eldbus_Connection* Connection() const { return mConnection; }

private:
    Eldbus_Connection* mConnection;
};

#endif
