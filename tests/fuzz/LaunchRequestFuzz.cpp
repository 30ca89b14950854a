// Launch requests from the bus, from the call to its answer. The first line of the input is the
// method; the others make its arguments, see CallWriter.

#include "CallWriter.h"
#include "LocalBus.h"
#include "app-control/ApplicationId.h"
#include "app-control/LaunchCall.h"
#include "app-control/LaunchInbox.h"
#include "app-control/messages/ExtraData.h"
#include "app-control/messages/LaunchInterface.h"
#include "base/Utf8.h"

#include <Ecore.h>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace WatchPort;

namespace
{
constexpr char kId[] = "org.example.Fuzz";

struct Process
{
    LocalBus bus;
    LaunchInbox inbox{bus.Client(), kId};
    Process() { bus.Client().FollowLoop(); }
};

Process* sProcess = nullptr;

void Require(bool condition)
{
    if (!condition)
        std::abort();
}

DBusMessage* NewCall(const std::string& method)
{
    const char* interface = method == "Launch" ? kLaunchInterface : kApplicationInterface;
    if (!dbus_validate_member(method.c_str(), nullptr))
        return nullptr;
    DBusMessage* call = dbus_message_new_method_call(nullptr, ApplicationObjectPath(kId).c_str(),
                                                     interface, method.c_str());
    dbus_message_set_sender(call, ":1.2");
    return call;
}

// Whatever arrived was sent: Open alone makes texts of its own.
void CheckRequest(const LaunchRequest& request, const std::set<std::string>& sent)
{
    Require(!request.operation.empty() && IsUtf8(request.operation) && !IsTooBig(request));
    for (const auto& [key, value] : request.extraData)
    {
        Require(!key.empty() && IsUtf8(key) && IsUtf8(value));
        Require(request.operation == "open" || (sent.count(key) == 1 && sent.count(value) == 1));
    }
}

void CheckAnswer(DBusMessage* answer, bool taken)
{
    if (taken)
        return Require(dbus_message_get_type(answer) == DBUS_MESSAGE_TYPE_METHOD_RETURN);
    Require(dbus_message_is_error(answer, DBUS_ERROR_INVALID_ARGS) ||
            dbus_message_is_error(answer, DBUS_ERROR_LIMITS_EXCEEDED) ||
            dbus_message_is_error(answer, DBUS_ERROR_UNKNOWN_METHOD));
}

// Answers a call as an application does that sends back what it got.
void Exchange(DBusMessage* call, const std::set<std::string>& sent)
{
    sProcess->bus.Send(call);
    bool taken = false;
    DBusMessage* answer = nullptr;
    while (answer == nullptr)
    {
        answer = sProcess->bus.Receive();
        ecore_main_loop_iterate();
        if (sProcess->inbox.IsEmpty())
            continue;
        taken = true;
        sProcess->inbox.HandOver(
            [&sent](app_control_h request)
            {
                CheckRequest(*request, sent);
                if (request->call->WishesReply())
                    app_control_reply_to_launch_request(request, request,
                                                        APP_CONTROL_RESULT_SUCCEEDED);
            });
    }
    CheckAnswer(answer, taken);
    dbus_message_unref(answer);
}
} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    setenv("DLOG_LEVEL", "silent", 1);
    ecore_app_no_system_modules();
    Require(ecore_init() > 0);
    sProcess = new Process;
    return std::atexit(
        []
        {
            delete sProcess;
            ecore_shutdown();
        });
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::istringstream lines(std::string(data, data + size));
    std::string method;
    std::getline(lines, method);
    DBusMessage* call = NewCall(method);
    if (call == nullptr)
        return 0;
    CallWriter writer(lines);
    if (writer.Write(call))
        Exchange(call, writer.Texts());
    dbus_message_unref(call);
    return 0;
}
