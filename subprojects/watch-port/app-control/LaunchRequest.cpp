#include "app-control/LaunchRequest.h"

#include "app-control/AppControl.h"
#include "app-control/ApplicationId.h"
#include "app-control/ExtraData.h"
#include "app-control/LaunchInterface.h"
#include "app-control/NameLookup.h"
#include "base/ApplicationCalls.h"
#include "bus/Buses.h"
#include "dlog/PortLog.h"

#include <memory>
#include <utility>

namespace WatchPort
{

namespace
{

constexpr std::chrono::seconds kForwardPatience(5);

// A request on its way. It lives until its answer has been told.
struct Launch
{
    Launch(BusConnection& sentOver, app_control_s sent, app_control_reply_cb onAnswer, void* data);
    ~Launch();
    Launch(const Launch&) = delete;
    Launch& operator=(const Launch&) = delete;

    BusConnection& bus;
    app_control_s request;
    const app_control_reply_cb callback;
    void* const userData;
    bool isReplyWanted;
    BusPending pending;
};

int Fail(app_control_error_e error, const app_control_s& request, const char* reason)
{
    PORT_LOG_ERROR("launch request to \"%s\": %s", request.appId.c_str(), reason);
    return error;
}

int FailReply(app_control_error_e error, const char* reason)
{
    PORT_LOG_ERROR("app_control_reply_to_launch_request: %s", reason);
    return error;
}

void AppendAction(DBusMessageIter* iter, const app_control_s& request)
{
    AppendText(iter, request.operation);
    DBusMessageIter parameters;
    DBusMessageIter variant;
    RequireMemory(dbus_message_iter_open_container(iter, DBUS_TYPE_ARRAY, "v", &parameters));
    RequireMemory(
        dbus_message_iter_open_container(&parameters, DBUS_TYPE_VARIANT, "a{sv}", &variant));
    AppendVariants(&variant, request.extraData);
    RequireMemory(dbus_message_iter_close_container(&parameters, &variant));
    RequireMemory(dbus_message_iter_close_container(iter, &parameters));
}

BusMessage NewMessage(const app_control_s& request)
{
    const bool isPlain =
        request.operation == APP_CONTROL_OPERATION_DEFAULT && request.extraData.empty();
    BusMessage message = NewCall(request.appId, ApplicationObjectPath(request.appId),
                                 kApplicationInterface, isPlain ? "Activate" : "ActivateAction");
    DBusMessageIter iter;
    dbus_message_iter_init_append(message.get(), &iter);
    if (!isPlain)
        AppendAction(&iter, request);
    const ExtraData noPlatformData;
    AppendVariants(&iter, noPlatformData);
    return message;
}

BusMessage NewReplyMessage(const app_control_s& request)
{
    BusMessage message = NewCall(request.appId, ApplicationObjectPath(request.appId),
                                 kLaunchInterface, "Launch", {request.operation});
    DBusMessageIter iter;
    dbus_message_iter_init_append(message.get(), &iter);
    AppendTexts(&iter, request.extraData);
    return message;
}

void SAnswerCB(DBusPendingCall* pending, void* data);
DBusHandlerResult SDisconnectedCB(DBusConnection* connection, DBusMessage* message, void* data);

Launch::Launch(BusConnection& sentOver, app_control_s sent, app_control_reply_cb onAnswer,
               void* data)
    : bus(sentOver), request(std::move(sent)), callback(onAnswer), userData(data),
      isReplyWanted(onAnswer != nullptr)
{
    RequireMemory(dbus_connection_add_filter(bus.Get(), SDisconnectedCB, this, nullptr));
}

Launch::~Launch()
{
    dbus_connection_remove_filter(bus.Get(), SDisconnectedCB, this);
}

bool Post(Launch& launch)
{
    launch.pending = launch.bus.Call(launch.isReplyWanted ? NewReplyMessage(launch.request)
                                                          : NewMessage(launch.request),
                                     kReplyPatience, SAnswerCB, &launch);
    return launch.pending != nullptr;
}

// Tells what became of a launch. A reply is there when the application made one.
void Tell(Launch& launch, app_control_h reply, app_control_result_e result)
{
    if (launch.callback && MayCallApplication())
        launch.callback(&launch.request, reply, result, launch.userData);
}

void TellFailed(Launch& launch, const char* reason)
{
    PORT_LOG_WARN("launch request to \"%s\" failed: %s", launch.request.appId.c_str(), reason);
    Tell(launch, nullptr, APP_CONTROL_RESULT_FAILED);
}

void TellReplied(Launch& launch, DBusMessage* answer)
{
    DBusMessageIter iter;
    if (!dbus_message_has_signature(answer, "ia{ss}") || !dbus_message_iter_init(answer, &iter))
    {
        TellFailed(launch, "the reply is malformed");
        return;
    }
    dbus_int32_t result = 0;
    dbus_message_iter_get_basic(&iter, &result);
    dbus_message_iter_next(&iter);
    app_control_s reply;
    if (ReadExtraData(Enter(&iter), reply.extraData))
        Tell(launch, &reply,
             result == 0 ? APP_CONTROL_RESULT_SUCCEEDED : APP_CONTROL_RESULT_FAILED);
    else
        TellFailed(launch, kTooBig);
}

// What applications answer that have no interface but the desktop's.
bool IsUnknownMethod(DBusMessage* error)
{
    return dbus_message_is_error(error, DBUS_ERROR_UNKNOWN_METHOD) ||
           dbus_message_is_error(error, DBUS_ERROR_UNKNOWN_INTERFACE) ||
           dbus_message_is_error(error, DBUS_ERROR_UNKNOWN_OBJECT);
}

void TellError(Launch& launch, DBusMessage* error)
{
    const char* text = nullptr;
    if (dbus_message_get_args(error, nullptr, DBUS_TYPE_STRING, &text, DBUS_TYPE_INVALID))
        TellFailed(launch, text);
    else
        TellFailed(launch, dbus_message_get_error_name(error));
}

void SAnswerCB(DBusPendingCall* pending, void* data)
{
    std::unique_ptr<Launch> launch(static_cast<Launch*>(data));
    const BusMessage answer(dbus_pending_call_steal_reply(pending));
    if (IsError(answer))
    {
        const bool isReplyUnknown = launch->isReplyWanted && IsUnknownMethod(answer.get());
        if (isReplyUnknown)
            launch->isReplyWanted = false;
        if (isReplyUnknown && Post(*launch))
            static_cast<void>(launch.release());
        else
            TellError(*launch, answer.get());
    }
    else if (launch->isReplyWanted)
        TellReplied(*launch, answer.get());
    else
        Tell(*launch, nullptr, APP_CONTROL_RESULT_SUCCEEDED);
}

// The bus library forgets calls without an answer when the bus has gone.
DBusHandlerResult SDisconnectedCB(DBusConnection*, DBusMessage* message, void* data)
{
    if (dbus_message_is_signal(message, DBUS_INTERFACE_LOCAL, "Disconnected"))
    {
        const std::unique_ptr<Launch> launch(static_cast<Launch*>(data));
        TellFailed(*launch, "the session bus has gone");
    }
    return DBUS_HANDLER_RESULT_NOT_YET_HANDLED;
}

int Send(const app_control_s& request, app_control_reply_cb callback, void* userData)
{
    BusConnection* const bus = SessionBus();
    if (bus)
        bus->FollowLoop();
    auto launch = bus ? std::make_unique<Launch>(*bus, request, callback, userData) : nullptr;
    if (!launch || !Post(*launch))
        return Fail(APP_CONTROL_ERROR_NOT_SENT, request, "the session bus did not take it");
    // Its answer's callback owns it now.
    static_cast<void>(launch.release());
    return APP_CONTROL_ERROR_NONE;
}
} // namespace

int SendLaunchRequest(const app_control_s& request, app_control_reply_cb callback, void* userData)
{
    if (request.appId.empty())
        return Fail(APP_CONTROL_ERROR_APP_ID_NOT_SET, request, "no application id is set");
    if (IsTooBig(request))
        return Fail(APP_CONTROL_ERROR_INVALID_PARAMETER, request, kTooBig);

    switch (AskSessionBus(request.appId))
    {
    case BusAnswer::NoBus:
        return Fail(APP_CONTROL_ERROR_NO_SESSION_BUS, request,
                    "there is no session bus, or it does not answer");
    case BusAnswer::Unknown:
        return Fail(APP_CONTROL_ERROR_APP_NOT_FOUND, request,
                    "no such application runs or can be started by the session bus");
    case BusAnswer::Known:
        break;
    }
    return Send(request, callback, userData);
}

bool ForwardLaunchRequest(BusConnection& bus, const app_control_s& request)
{
    const auto deadline = BusConnection::Clock::now() + kForwardPatience;
    return !IsError(bus.Ask(NewMessage(request), deadline));
}

int ReplyToLaunchRequest(const app_control_s& reply, app_control_s& request,
                         app_control_result_e result)
{
    LaunchSender* sender = request.sender.get();
    if (!sender || !sender->WishesReply() || !sender->IsThere())
        return FailReply(APP_CONTROL_ERROR_NO_SENDER, "nobody waits for an answer");
    if (sender->IsAnswered())
        return FailReply(APP_CONTROL_ERROR_ALREADY_REPLIED, "the request has had its reply");
    if (IsTooBig(reply))
        return FailReply(APP_CONTROL_ERROR_INVALID_PARAMETER, kTooBig);
    sender->SendReply(reply, result);
    return APP_CONTROL_ERROR_NONE;
}

} // namespace WatchPort
