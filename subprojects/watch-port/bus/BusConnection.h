#ifndef WATCH_PORT_BUS_BUS_CONNECTION_H
#define WATCH_PORT_BUS_BUS_CONNECTION_H

#include "bus/BusLoop.h"
#include "bus/BusMessage.h"

#include <chrono>
#include <functional>
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

/** A call without an answer yet; its callback is not called after its release. */
using BusPending = std::unique_ptr<DBusPendingCall, BusPendingRelease>;

/**
 * A connection of its own to a message bus.
 *
 * At first its questions block, each until a deadline, even if the bus does not accept, falls
 * silent or stops reading. SIGTERM, SIGINT and SIGHUP end such a wait within
 * Termination::kLookMilliseconds. After FollowLoop() the main loop reads and writes.
 *
 * The bus library's own functions to connect and to wait have no deadline until the bus has
 * authenticated the client, nor for writing. The toolkit's bus library builds on those, and never
 * sends the rest of a message that the bus did not accept at once.
 */
class BusConnection
{
public:
    using Clock = std::chrono::steady_clock;

    /** How long a bus may take to authenticate a client and to answer its first questions. */
    static constexpr std::chrono::seconds kPatience{2};

    /**
     * Connects and authenticates.
     *
     * @param address A bus's address; an empty or wrong one counts as a bus that does not answer.
     * @return Null if the bus has not accepted the connection before the deadline.
     */
    static std::unique_ptr<BusConnection> Open(const std::string& address,
                                               Clock::time_point deadline);

    ~BusConnection();
    BusConnection(const BusConnection&) = delete;
    BusConnection& operator=(const BusConnection&) = delete;

    DBusConnection* Get() const { return mConnection; }
    bool IsConnected() const { return dbus_connection_get_is_connected(mConnection); }

    /**
     * Sends a question and waits for its answer. Calls that arrive meanwhile go to the registered
     * objects. Must not be called after FollowLoop().
     *
     * @return The answer, which may be an error; null if there was none before the deadline.
     */
    BusMessage Ask(BusMessage question, Clock::time_point deadline);

    /**
     * Handles what arrives until a condition holds.
     *
     * @return Whether it holds; not if the deadline came first, or a signal to end, or the
     *         connection's end.
     */
    bool HandleUntil(const std::function<bool()>& holds, Clock::time_point deadline);

    /** Handles what has arrived until a condition holds, and waits for nothing. */
    void HandleArrivedUntil(const std::function<bool()>& holds);

    /** Hands the connection to the main loop, the first time. Ecore then stays initialised. */
    void FollowLoop();

    /** Sends a message whose answer nobody wants, or an answer. */
    void Post(BusMessage message);

    /**
     * Sends a call.
     *
     * @param onAnswer Called by the main loop once, with the answer or an error to steal.
     * @param data Passed to onAnswer.
     * @return Null if the connection has ended; onAnswer is not called then.
     */
    BusPending Call(BusMessage call, std::chrono::milliseconds patience,
                    DBusPendingCallNotifyFunction onAnswer, void* data);

    /**
     * Does the work of a callback that the main loop's dispatch calls. The bus library is C code,
     * which an exception would leave locked: lack of memory is one error line, and the message is
     * lost; another exception, which is the application's, goes on when the library has returned.
     */
    template <typename Work> void WithinCallback(Work work) noexcept
    try
    {
        work();
    }
    catch (...)
    {
        KeepException();
    }

private:
    explicit BusConnection(DBusConnection* connection);

    bool Enter(Clock::time_point deadline);
    bool HasArrived() const;
    void KeepException() noexcept;

    DBusConnection* const mConnection;
    std::optional<BusLoop> mLoop;
};

} // namespace WatchPort

#endif
