#include "app-control/LaunchRequest.h"

#include "app-control/AppControl.h"
#include "app-control/ApplicationId.h"
#include "app-control/ExtraData.h"
#include "app-control/LaunchBus.h"
#include "app-control/LaunchInbox.h"
#include "app-control/NameLookup.h"
#include "dlog/dlog.h"
#include "support/ApplicationCalls.h"
#include "support/BusSignature.h"

#include <Ecore.h>
#include <cstring>
#include <memory>
#include <utility>

namespace
{
constexpr double kAnswerMilliseconds = kReplySeconds * 1000;
constexpr double kForwardMilliseconds = 10000;
constexpr char kInterface[] = "org.freedesktop.Application";

// A request on its way. It lives until its answer has been told.
struct Launch
{
    Launch(app_control_s sent, app_control_reply_cb onAnswer, void* data);
    ~Launch();
    Launch(const Launch&) = delete;
    Launch& operator=(const Launch&) = delete;

    LaunchBus bus;
    app_control_s request;
    const app_control_reply_cb callback;
    void* const userData;
    bool isReplyWanted;
    bool isBusGone = false;
    Eldbus_Pending* pending = nullptr;
};

int Fail(app_control_error_e error, const app_control_s& request, const char* reason)
{
    __dlog_print(LOG_ID_MAIN, DLOG_ERROR, "WATCH_PORT", "launch request to \"%s\": %s",
                 request.appId.c_str(), reason);
    return error;
}

int FailReply(app_control_error_e error, const char* reason)
{
    __dlog_print(LOG_ID_MAIN, DLOG_ERROR, "WATCH_PORT", "app_control_reply_to_launch_request: %s",
                 reason);
    return error;
}

void AppendAction(Eldbus_Message_Iter* iter, const app_control_s& request)
{
    eldbus_message_iter_basic_append(iter, 's', request.operation.c_str());
    Eldbus_Message_Iter* parameters = eldbus_message_iter_container_new(iter, 'a', "v");
    Eldbus_Message_Iter* variant = eldbus_message_iter_container_new(parameters, 'v', "a{sv}");
    AppendVariants(variant, request.extraData);
    eldbus_message_iter_container_close(parameters, variant);
    eldbus_message_iter_container_close(iter, parameters);
}

Eldbus_Message* NewMessage(const app_control_s& request)
{
    const bool isPlain =
        request.operation == APP_CONTROL_OPERATION_DEFAULT && request.extraData.empty();
    Eldbus_Message* message = eldbus_message_method_call_new(
        request.appId.c_str(), ApplicationObjectPath(request.appId).c_str(), kInterface,
        isPlain ? "Activate" : "ActivateAction");
    Eldbus_Message_Iter* iter = eldbus_message_iter_get(message);
    if (!isPlain)
        AppendAction(iter, request);
    Eldbus_Message_Iter* platformData = eldbus_message_iter_container_new(iter, 'a', "{sv}");
    eldbus_message_iter_container_close(iter, platformData);
    return message;
}

void SReleaseJob(void* data)
{
    delete static_cast<Launch*>(data);
}

Eldbus_Message* NewReplyMessage(const app_control_s& request)
{
    Eldbus_Message* message = eldbus_message_method_call_new(
        request.appId.c_str(), ApplicationObjectPath(request.appId).c_str(), kLaunchInterface,
        "Launch");
    Eldbus_Message_Iter* iter = eldbus_message_iter_get(message);
    eldbus_message_iter_basic_append(iter, 's', request.operation.c_str());
    AppendTexts(iter, request.extraData);
    return message;
}

void SAnswerCB(void* data, const Eldbus_Message* answer, Eldbus_Pending* pending);

bool Post(Launch& launch)
{
    Eldbus_Message* message =
        launch.isReplyWanted ? NewReplyMessage(launch.request) : NewMessage(launch.request);
    launch.pending = eldbus_connection_send(launch.bus.Connection(), message, SAnswerCB, &launch,
                                            kAnswerMilliseconds);
    return launch.pending != nullptr;
}

// The bus library leaves calls without an answer to their time limit when the bus has gone.
void SDisconnectedCB(void* data, Eldbus_Connection*, void*)
{
    auto* launch = static_cast<Launch*>(data);
    launch->isBusGone = true;
    if (launch->pending != nullptr)
        eldbus_pending_cancel(launch->pending);
}

Launch::Launch(app_control_s sent, app_control_reply_cb onAnswer, void* data)
    : request(std::move(sent)), callback(onAnswer), userData(data),
      isReplyWanted(onAnswer != nullptr)
{
    if (bus.IsConnected())
        eldbus_connection_event_callback_add(bus.Connection(), ELDBUS_CONNECTION_EVENT_DISCONNECTED,
                                             SDisconnectedCB, this);
}

Launch::~Launch()
{
    if (bus.IsConnected())
        eldbus_connection_event_callback_del(bus.Connection(), ELDBUS_CONNECTION_EVENT_DISCONNECTED,
                                             SDisconnectedCB, this);
}

// Ends a launch: tells what became of it. A reply is there when the application made one.
void Finish(Launch& launch, app_control_h reply, app_control_result_e result)
{
    if (launch.callback != nullptr && MayCallApplication())
        launch.callback(&launch.request, reply, result, launch.userData);
    // The bus library is still at work on the connection that this releases.
    ecore_job_add(SReleaseJob, &launch);
}

void FinishFailed(Launch& launch, const char* reason)
{
    __dlog_print(LOG_ID_MAIN, DLOG_WARN, "WATCH_PORT", "launch request to \"%s\" failed: %s",
                 launch.request.appId.c_str(), reason);
    Finish(launch, nullptr, APP_CONTROL_RESULT_FAILED);
}

void FinishReplied(Launch& launch, const Eldbus_Message* answer)
{
    int result = 0;
    Eldbus_Message_Iter* entries = nullptr;
    if (!HasSignature(answer, "ia{ss}") ||
        !eldbus_message_arguments_get(answer, "ia{ss}", &result, &entries))
    {
        FinishFailed(launch, "the reply is malformed");
        return;
    }
    app_control_s reply;
    reply.extraData = ReadTexts(entries);
    Finish(launch, &reply, result == 0 ? APP_CONTROL_RESULT_SUCCEEDED : APP_CONTROL_RESULT_FAILED);
}

// What applications answer that have no interface but the desktop's.
bool IsUnknownMethod(const char* error)
{
    constexpr char kErrors[] = "org.freedesktop.DBus.Error.";
    const size_t length = sizeof kErrors - 1;
    return std::strncmp(error, kErrors, length) == 0 &&
           (std::strcmp(error + length, "UnknownMethod") == 0 ||
            std::strcmp(error + length, "UnknownInterface") == 0 ||
            std::strcmp(error + length, "UnknownObject") == 0);
}

void OnError(Launch& launch, const char* name, const char* text)
{
    const bool isReplyUnknown = launch.isReplyWanted && IsUnknownMethod(name);
    if (isReplyUnknown)
        launch.isReplyWanted = false;
    if (isReplyUnknown && Post(launch))
        return;
    if (launch.isBusGone)
        FinishFailed(launch, "the session bus has gone");
    else
        FinishFailed(launch, text != nullptr ? text : name);
}

void SAnswerCB(void* data, const Eldbus_Message* answer, Eldbus_Pending*)
{
    Launch& launch = *static_cast<Launch*>(data);
    launch.pending = nullptr;
    const char* name = nullptr;
    const char* text = nullptr;
    if (eldbus_message_error_get(answer, &name, &text))
        OnError(launch, name, text);
    else if (launch.isReplyWanted)
        FinishReplied(launch, answer);
    else
        Finish(launch, nullptr, APP_CONTROL_RESULT_SUCCEEDED);
}

int Send(const app_control_s& request, app_control_reply_cb callback, void* userData)
{
    auto launch = std::make_unique<Launch>(request, callback, userData);
    if (!launch->bus.IsConnected() || !Post(*launch))
        return Fail(APP_CONTROL_ERROR_NOT_SENT, request, "the session bus took it not");
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
        return Fail(APP_CONTROL_ERROR_INVALID_PARAMETER, request, "more than 1 MiB of text");

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

bool ForwardLaunchRequest(const LaunchBus& bus, const app_control_s& request)
{
    Eldbus_Message* answer = bus.Call(request.appId, ApplicationObjectPath(request.appId),
                                      kInterface, NewMessage(request), kForwardMilliseconds);
    const bool isTaken = answer != nullptr && !eldbus_message_error_get(answer, nullptr, nullptr);
    if (answer != nullptr)
        eldbus_message_unref(answer);
    return isTaken;
}

int ReplyToLaunchRequest(const app_control_s& reply, app_control_s& request,
                         app_control_result_e result)
{
    LaunchSender* sender = request.sender.get();
    if (sender == nullptr || !sender->WishesReply() || !sender->IsThere())
        return FailReply(APP_CONTROL_ERROR_NO_SENDER, "nobody waits for an answer");
    if (sender->IsAnswered())
        return FailReply(APP_CONTROL_ERROR_ALREADY_REPLIED, "the request has had its reply");
    if (IsTooBig(reply))
        return FailReply(APP_CONTROL_ERROR_INVALID_PARAMETER, "more than 1 MiB of text");
    sender->SendReply(reply, result);
    return APP_CONTROL_ERROR_NONE;
}
