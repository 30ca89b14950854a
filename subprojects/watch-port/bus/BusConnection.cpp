#include "bus/BusConnection.h"

#include "base/Patience.h"
#include "base/Termination.h"
#include "dlog/PortLog.h"

#include <Ecore.h>
#include <algorithm>
#include <exception>
#include <new>
#include <poll.h>

namespace WatchPort
{

namespace
{
using std::chrono::milliseconds;

// Of those who send without end.
constexpr milliseconds kArrivedPatience(100);

struct Closer
{
    void operator()(DBusConnection* connection) const
    {
        dbus_connection_close(connection);
        dbus_connection_unref(connection);
    }
};
using Opened = std::unique_ptr<DBusConnection, Closer>;

milliseconds TimeLeft(BusConnection::Clock::time_point deadline)
{
    const auto left = deadline - BusConnection::Clock::now();
    return std::max(milliseconds(0), std::chrono::duration_cast<milliseconds>(left));
}
} // namespace

std::unique_ptr<BusConnection> BusConnection::Open(const std::string& address,
                                                   Clock::time_point deadline)
{
    // Otherwise a signal between two waits would be delivered, and the second wait would miss it.
    const Termination termination;
    auto opened = CallWithPatience(
        TimeLeft(deadline),
        [address] { return Opened(dbus_connection_open_private(address.c_str(), nullptr)); });
    if (!opened || !*opened)
        return nullptr;
    std::unique_ptr<BusConnection> connection(new BusConnection(opened->release()));
    return connection->Enter(deadline) ? std::move(connection) : nullptr;
}

BusConnection::BusConnection(DBusConnection* connection) : mConnection(connection)
{
}

BusConnection::~BusConnection()
{
    mLoop.reset();
    Closer()(mConnection);
}

bool BusConnection::Enter(Clock::time_point deadline)
{
    const BusMessage name =
        Ask(NewCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "Hello"), deadline);
    const char* unique = nullptr;
    return !IsError(name) &&
           dbus_message_get_args(name.get(), nullptr, DBUS_TYPE_STRING, &unique,
                                 DBUS_TYPE_INVALID) &&
           dbus_bus_set_unique_name(mConnection, unique);
}

BusMessage BusConnection::Ask(BusMessage question, Clock::time_point deadline)
{
    DBusPendingCall* sent = nullptr;
    RequireMemory(
        dbus_connection_send_with_reply(mConnection, question.get(), &sent, DBUS_TIMEOUT_INFINITE));
    const BusPending pending(sent);
    const bool isAnswered =
        pending && HandleUntil([&] { return dbus_pending_call_get_completed(sent); }, deadline);
    return BusMessage(isAnswered ? dbus_pending_call_steal_reply(sent) : nullptr);
}

bool BusConnection::HandleUntil(const std::function<bool()>& holds, Clock::time_point deadline)
{
    const Termination termination;
    bool isConnected = true;
    while (!holds() && isConnected && TimeLeft(deadline).count() > 0 && !termination.HasCome())
    {
        const auto slice =
            std::min(TimeLeft(deadline), milliseconds(Termination::kLookMilliseconds));
        isConnected =
            dbus_connection_read_write_dispatch(mConnection, static_cast<int>(slice.count()));
    }
    return holds();
}

void BusConnection::HandleArrivedUntil(const std::function<bool()>& holds)
{
    const auto enough = Clock::now() + kArrivedPatience;
    while (!holds() && HasArrived() && TimeLeft(enough).count() > 0)
        if (!dbus_connection_read_write_dispatch(mConnection, 0))
            return;
}

bool BusConnection::HasArrived() const
{
    pollfd socket{-1, POLLIN, 0};
    dbus_connection_get_unix_fd(mConnection, &socket.fd);
    return dbus_connection_get_dispatch_status(mConnection) == DBUS_DISPATCH_DATA_REMAINS ||
           poll(&socket, 1, 0) > 0;
}

// Ecore's own listeners on the system bus are disabled: they report a missing bus as an error and
// crash on a malformed PropertiesChanged.
void BusConnection::FollowLoop()
{
    if (mLoop)
        return;
    ecore_app_no_system_modules();
    ecore_init();
    mLoop.emplace(mConnection);
}

void BusConnection::Post(BusMessage message)
{
    RequireMemory(dbus_connection_send(mConnection, message.get(), nullptr));
}

BusPending BusConnection::Call(BusMessage call, milliseconds patience,
                               DBusPendingCallNotifyFunction onAnswer, void* data)
{
    DBusPendingCall* sent = nullptr;
    RequireMemory(dbus_connection_send_with_reply(mConnection, call.get(), &sent,
                                                  static_cast<int>(patience.count())));
    BusPending pending(sent);
    if (pending)
        RequireMemory(dbus_pending_call_set_notify(sent, onAnswer, data, nullptr));
    return pending;
}

void BusConnection::KeepException() noexcept
try
{
    throw;
}
catch (const std::bad_alloc&)
{
    PORT_LOG_ERROR("a message of a bus is lost: out of memory");
}
catch (...)
{
    mLoop->ThrowLater(std::current_exception());
}

} // namespace WatchPort
