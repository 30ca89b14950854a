#include "app-control/BusProbe.h"

#include <chrono>
#include <cstdlib>
#include <dbus/dbus.h>
#include <memory>
#include <optional>
#include <sys/stat.h>

namespace
{
using Clock = std::chrono::steady_clock;
using Message = std::unique_ptr<DBusMessage, decltype(&dbus_message_unref)>;

constexpr std::chrono::seconds kPatience(2);

bool IsSocket(const std::string& path)
{
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && S_ISSOCK(status.st_mode);
}

// Where the environment names no bus, the bus library itself would start one.
std::string SessionBusAddress()
{
    const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (address != nullptr && *address != '\0')
        return address;
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    const std::string path = std::string(runtime == nullptr ? "" : runtime) + "/bus";
    return IsSocket(path) ? "unix:path=" + path : "";
}

// A private connection on which every question is answered before one deadline, or not at all.
class Probe
{
public:
    explicit Probe(const std::string& address)
        : mConnection(dbus_connection_open_private(address.c_str(), nullptr))
    {
        if (mConnection != nullptr)
            dbus_connection_set_exit_on_disconnect(mConnection, FALSE);
    }
    ~Probe()
    {
        if (mConnection == nullptr)
            return;
        dbus_connection_close(mConnection);
        dbus_connection_unref(mConnection);
    }
    Probe(const Probe&) = delete;
    Probe& operator=(const Probe&) = delete;

    bool IsOpen() const { return mConnection != nullptr; }

    // Returns null when there is no answer in time.
    Message Ask(const char* method, const std::string& argument = {}) const
    {
        const Message question(dbus_message_new_method_call(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS,
                                                            DBUS_INTERFACE_DBUS, method),
                               dbus_message_unref);
        const char* text = argument.c_str();
        if (!argument.empty())
            dbus_message_append_args(question.get(), DBUS_TYPE_STRING, &text, DBUS_TYPE_INVALID);
        DBusPendingCall* pending = nullptr;
        dbus_connection_send_with_reply(mConnection, question.get(), &pending,
                                        DBUS_TIMEOUT_INFINITE);
        return {pending == nullptr ? nullptr : Await(pending), dbus_message_unref};
    }

private:
    DBusMessage* Await(DBusPendingCall* pending) const
    {
        const std::unique_ptr<DBusPendingCall, decltype(&dbus_pending_call_unref)> owner(
            pending, dbus_pending_call_unref);
        while (dbus_pending_call_get_completed(pending) == FALSE)
        {
            using std::chrono::milliseconds;
            const auto left = std::chrono::duration_cast<milliseconds>(mDeadline - Clock::now());
            if (left.count() <= 0 || dbus_connection_read_write_dispatch(
                                         mConnection, static_cast<int>(left.count())) == FALSE)
                break;
        }
        if (dbus_pending_call_get_completed(pending) != FALSE)
            return dbus_pending_call_steal_reply(pending);
        dbus_pending_call_cancel(pending);
        return nullptr;
    }

    DBusConnection* mConnection;
    Clock::time_point mDeadline = Clock::now() + kPatience;
};

std::optional<bool> HasOwner(const Probe& bus, const std::string& name)
{
    const Message answer = bus.Ask("NameHasOwner", name);
    dbus_bool_t has = FALSE;
    if (!answer ||
        !dbus_message_get_args(answer.get(), nullptr, DBUS_TYPE_BOOLEAN, &has, DBUS_TYPE_INVALID))
        return std::nullopt;
    return has != FALSE;
}

std::optional<bool> IsActivatable(const Probe& bus, const std::string& name)
{
    const Message answer = bus.Ask("ListActivatableNames");
    char** names = nullptr;
    int count = 0;
    if (!answer || !dbus_message_get_args(answer.get(), nullptr, DBUS_TYPE_ARRAY, DBUS_TYPE_STRING,
                                          &names, &count, DBUS_TYPE_INVALID))
        return std::nullopt;
    bool found = false;
    for (int i = 0; i < count; ++i)
        found = found || name == names[i];
    dbus_free_string_array(names);
    return found;
}
} // namespace

BusAnswer AskSessionBus(const std::string& name)
{
    const std::string address = SessionBusAddress();
    if (address.empty())
        return BusAnswer::NoBus;
    const Probe bus(address);
    if (!bus.IsOpen() || !bus.Ask("Hello"))
        return BusAnswer::NoBus;
    auto known = HasOwner(bus, name);
    if (known == false)
        known = IsActivatable(bus, name);
    if (!known)
        return BusAnswer::NoBus;
    return *known ? BusAnswer::Known : BusAnswer::Unknown;
}
