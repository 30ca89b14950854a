#ifndef TESTS_FUZZ_LOCAL_BUS_H
#define TESTS_FUZZ_LOCAL_BUS_H

#include <Eldbus.h>
#include <dbus/dbus.h>

/**
 * A message bus of one connection within the process. Messages of Eldbus's own making can be
 * written and not read, so those to be read must really arrive.
 */
class LocalBus
{
public:
    LocalBus();
    ~LocalBus();
    LocalBus(const LocalBus&) = delete;
    LocalBus& operator=(const LocalBus&) = delete;

    Eldbus_Connection* Client() const { return mClient; }

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
    Eldbus_Connection* mClient = nullptr;
};

#endif
