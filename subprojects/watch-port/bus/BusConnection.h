#ifndef WATCH_PORT_BUS_BUS_CONNECTION_H
#define WATCH_PORT_BUS_BUS_CONNECTION_H

#include "bus/BusLoop.h"
#include "bus/BusMessage.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace WatchPort
{

struct BusPendingRelease
{
    void operator()(DBusPendingCall* call) const
    {
        dbus_pending_call_cancel(call);
        dbus_pending_call_unref(call);
    }
};

/** A call whose answer is to come; its callback is not called after its release. */
using BusPending = std::unique_ptr<DBusPendingCall, BusPendingRelease>;

/**
 * A connection of its own to a message bus.
 *
 * It begins with questions that are waited for, each until a deadline and not a moment longer,
 * whatever the bus does: one that accepts nobody, keeps silent or stops to read. SIGTERM, SIGINT
 * and SIGHUP end such a wait within Termination::kLookMilliseconds. After FollowLoop() the main
 * loop reads and writes.
 *
 * The bus library's own ways to connect and to wait take no deadline until the bus has let the
 * client in, nor for what it has to write. The toolkit's library for message buses builds on those,
 * and never goes on with a message that the bus did not take at once.
 */
class BusConnection
{
public:
    using Clock = std::chrono::steady_clock;

    /** How long a bus may take to let a client in, and to answer its first questions. */
    static constexpr std::chrono::seconds kPatience{2};

    /**
     * Connects and is let in.
     *
     * @param address A bus's address; an empty or a wrong one is a bus that does not answer.
     * @return Null when the bus has not let the connection in before the deadline.
     */
    static std::unique_ptr<BusConnection> Open(const std::string& address,
                                               Clock::time_point deadline);

    ~BusConnection();
    BusConnection(const BusConnection&) = delete;
    BusConnection& operator=(const BusConnection&) = delete;

    DBusConnection* Get() const { return mConnection; }
    bool IsConnected() const { return dbus_connection_get_is_connected(mConnection); }

    /**
     * Sends a question and waits for its answer. Calls that arrive meanwhile come to the objects
     * that are registered. Not to be called after FollowLoop().
     *
     * @return The answer, which may be an error; null when there was none before the deadline.
     */
    BusMessage Ask(BusMessage question, Clock::time_point deadline);

    /** Leaves the connection to the main loop, if that has not been done. Ecore stays up then. */
    void FollowLoop();

    /** Sends a message whose answer nobody wants, or an answer. */
    void Post(BusMessage message);

    /**
     * Sends a call.
     *
     * @param onAnswer Called by the main loop once, with the answer or an error to steal.
     * @param data Passed to onAnswer.
     * @return Null when the connection has ended; onAnswer is not called then.
     */
    BusPending Call(BusMessage call, std::chrono::milliseconds patience,
                    DBusPendingCallNotifyFunction onAnswer, void* data);

private:
    explicit BusConnection(DBusConnection* connection);

    bool Enter(Clock::time_point deadline);

    DBusConnection* const mConnection;
    std::optional<BusLoop> mLoop;
};

} // namespace WatchPort

#endif
