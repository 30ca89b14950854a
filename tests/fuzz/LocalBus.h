#ifndef TESTS_FUZZ_LOCAL_BUS_H
#define TESTS_FUZZ_LOCAL_BUS_H

#include "bus/BusConnection.h"

using namespace WatchPort;

/** A message bus of one connection within the process, so that messages really arrive. */
class LocalBus
{
public:
    LocalBus();
    ~LocalBus();
    LocalBus(const LocalBus&) = delete;
    LocalBus& operator=(const LocalBus&) = delete;

    WatchPort::BusConnection& Client() const { return *mClient; }

    /** Hands a message to the client, who reads it in the main loop. */
    void Send(DBusMessage* message);

    /** A message that came from the client, which the caller releases; null when there is none. */
    DBusMessage* Receive();

private:
    static void SConnectedCB(DBusServer* server, DBusConnection* connection, void* data);
    static dbus_bool_t SAddWatchCB(DBusWatch* watch, void* data);

    void Welcome();

    DBusWatch* mWatch = nullptr;
    DBusConnection* mConnection = nullptr;
    std::unique_ptr<WatchPort::BusConnection> mClient;
};

#endif
