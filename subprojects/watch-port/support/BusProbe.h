#ifndef WATCH_PORT_SUPPORT_BUS_PROBE_H
#define WATCH_PORT_SUPPORT_BUS_PROBE_H

#include <chrono>
#include <dbus/dbus.h>
#include <memory>
#include <string>

/**
 * A connection of its own to a message bus, to ask the bus itself: every question is answered
 * before one deadline, two seconds after the beginning, or not at all.
 *
 * The bus library's own ways to connect and to wait take no deadline until the bus has let the
 * client in: for one that accepts nobody any more, or accepts and then keeps silent, they wait
 * without an end.
 */
class BusProbe
{
public:
    using Message = std::unique_ptr<DBusMessage, decltype(&dbus_message_unref)>;

    /** @param address A bus's address; an empty or a wrong one is a bus that does not answer. */
    explicit BusProbe(const std::string& address);

    /** Tells whether the bus let this connection in. */
    bool IsAnswering() const { return mIsAnswering; }

    /**
     * Calls a method of the bus that takes one text, or nothing for an empty one.
     *
     * @return Null for an error and when there is no answer in time.
     */
    Message Ask(const char* method, const std::string& argument = {}) const;

private:
    struct Closer
    {
        void operator()(DBusConnection* connection) const;
    };
    using Connection = std::unique_ptr<DBusConnection, Closer>;

    static Connection Open(const std::string& address);
    DBusMessage* Await(DBusPendingCall* pending) const;

    const std::chrono::steady_clock::time_point mDeadline;
    const Connection mConnection;
    const bool mIsAnswering;
};

#endif
