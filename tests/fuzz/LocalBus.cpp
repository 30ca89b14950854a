#include "LocalBus.h"

#include <cstdlib>
#include <poll.h>
#include <thread>

LocalBus::LocalBus()
{
    DBusServer* server = dbus_server_listen("unix:tmpdir=/tmp", nullptr);
    if (server == nullptr)
        std::abort();
    dbus_server_set_new_connection_function(server, SConnectedCB, this, nullptr);
    dbus_server_set_watch_functions(
        server, SAddWatchCB, [](DBusWatch*, void*) {}, nullptr, this, nullptr);
    char* address = dbus_server_get_address(server);
    // The client waits for its welcome.
    std::thread welcome([this] { Welcome(); });
    mClient = WatchPort::BusConnection::Open(address, WatchPort::BusConnection::Clock::now() +
                                                          std::chrono::minutes(1));
    welcome.join();
    dbus_free(address);
    dbus_server_disconnect(server);
    dbus_server_unref(server);
    if (!mClient)
        std::abort();
}

LocalBus::~LocalBus()
{
    mClient.reset();
    dbus_connection_close(mConnection);
    dbus_connection_unref(mConnection);
}

void LocalBus::Send(DBusMessage* message)
{
    dbus_connection_send(mConnection, message, nullptr);
}

DBusMessage* LocalBus::Receive()
{
    dbus_connection_read_write(mConnection, 0);
    return dbus_connection_pop_message(mConnection);
}

void LocalBus::Welcome()
{
    pollfd listening = {dbus_watch_get_unix_fd(mWatch), POLLIN, 0};
    while (mConnection == nullptr && poll(&listening, 1, -1) > 0)
        dbus_watch_handle(mWatch, DBUS_WATCH_READABLE);
    DBusMessage* hello = nullptr;
    while (hello == nullptr && dbus_connection_read_write(mConnection, -1))
        hello = dbus_connection_pop_message(mConnection);
    DBusMessage* answer = dbus_message_new_method_return(hello);
    const char* name = ":1.1";
    dbus_message_append_args(answer, DBUS_TYPE_STRING, &name, DBUS_TYPE_INVALID);
    Send(answer);
    dbus_connection_flush(mConnection);
    dbus_message_unref(answer);
    dbus_message_unref(hello);
}

void LocalBus::SConnectedCB(DBusServer*, DBusConnection* connection, void* data)
{
    static_cast<LocalBus*>(data)->mConnection = dbus_connection_ref(connection);
}

dbus_bool_t LocalBus::SAddWatchCB(DBusWatch* watch, void* data)
{
    static_cast<LocalBus*>(data)->mWatch = watch;
    return TRUE;
}
