#include "support/BusProbe.h"

#include "support/Patience.h"

#include <utility>

namespace
{
using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kPatience(2);
} // namespace

BusProbe::BusProbe(const std::string& address)
    : mDeadline(Clock::now() + kPatience), mConnection(Open(address)),
      mIsAnswering(mConnection && Ask("Hello"))
{
}

void BusProbe::Closer::operator()(DBusConnection* connection) const
{
    dbus_connection_close(connection);
    dbus_connection_unref(connection);
}

BusProbe::Connection BusProbe::Open(const std::string& address)
{
    auto connection = CallWithPatience(
        kPatience,
        [address] { return Connection(dbus_connection_open_private(address.c_str(), nullptr)); });
    return connection ? std::move(*connection) : nullptr;
}

BusProbe::Message BusProbe::Ask(const char* method, const std::string& argument) const
{
    const Message question(dbus_message_new_method_call(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS,
                                                        DBUS_INTERFACE_DBUS, method),
                           dbus_message_unref);
    const char* text = argument.c_str();
    if (!argument.empty())
        dbus_message_append_args(question.get(), DBUS_TYPE_STRING, &text, DBUS_TYPE_INVALID);
    DBusPendingCall* pending = nullptr;
    dbus_connection_send_with_reply(mConnection.get(), question.get(), &pending,
                                    DBUS_TIMEOUT_INFINITE);
    Message answer(pending ? Await(pending) : nullptr, dbus_message_unref);
    if (answer && dbus_message_get_type(answer.get()) == DBUS_MESSAGE_TYPE_ERROR)
        answer.reset();
    return answer;
}

DBusMessage* BusProbe::Await(DBusPendingCall* pending) const
{
    const std::unique_ptr<DBusPendingCall, decltype(&dbus_pending_call_unref)> owner(
        pending, dbus_pending_call_unref);
    while (!dbus_pending_call_get_completed(pending))
    {
        using std::chrono::milliseconds;
        const auto left = std::chrono::duration_cast<milliseconds>(mDeadline - Clock::now());
        if (left.count() <= 0 ||
            !dbus_connection_read_write_dispatch(mConnection.get(), static_cast<int>(left.count())))
            break;
    }
    if (dbus_pending_call_get_completed(pending))
        return dbus_pending_call_steal_reply(pending);
    dbus_pending_call_cancel(pending);
    return nullptr;
}
