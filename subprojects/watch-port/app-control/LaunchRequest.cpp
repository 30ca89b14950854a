#include "app-control/LaunchRequest.h"

#include "app-control/AppControl.h"
#include "app-control/ApplicationId.h"
#include "app-control/NameLookup.h"
#include "dlog/dlog.h"
#include "support/Buses.h"

#include <memory>

namespace
{
constexpr size_t kMostBytes = size_t{1024} * 1024;
constexpr double kAnswerMilliseconds = 25000;
constexpr char kInterface[] = "org.freedesktop.Application";

// A request on its way. It lives until its answer has been told.
struct Launch
{
    app_control_s request;
    app_control_reply_cb callback = nullptr;
    void* userData = nullptr;
};

int Fail(app_control_error_e error, const app_control_s& request, const char* reason)
{
    __dlog_print(LOG_ID_MAIN, DLOG_ERROR, "WATCH_PORT", "launch request to \"%s\": %s",
                 request.appId.c_str(), reason);
    return error;
}

bool IsTooBig(const app_control_s& request)
{
    size_t bytes = request.operation.size();
    for (const auto& [key, value] : request.extraData)
        bytes += key.size() + value.size();
    return bytes > kMostBytes;
}

void AppendExtraData(Eldbus_Message_Iter* iter, const app_control_s& request)
{
    Eldbus_Message_Iter* entries = eldbus_message_iter_container_new(iter, 'a', "{sv}");
    for (const auto& [key, value] : request.extraData)
    {
        Eldbus_Message_Iter* entry = eldbus_message_iter_container_new(entries, 'e', nullptr);
        eldbus_message_iter_basic_append(entry, 's', key.c_str());
        Eldbus_Message_Iter* variant = eldbus_message_iter_container_new(entry, 'v', "s");
        eldbus_message_iter_basic_append(variant, 's', value.c_str());
        eldbus_message_iter_container_close(entry, variant);
        eldbus_message_iter_container_close(entries, entry);
    }
    eldbus_message_iter_container_close(iter, entries);
}

void AppendAction(Eldbus_Message_Iter* iter, const app_control_s& request)
{
    eldbus_message_iter_basic_append(iter, 's', request.operation.c_str());
    Eldbus_Message_Iter* parameters = eldbus_message_iter_container_new(iter, 'a', "v");
    Eldbus_Message_Iter* variant = eldbus_message_iter_container_new(parameters, 'v', "a{sv}");
    AppendExtraData(variant, request);
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

void SAnswerCB(void* data, const Eldbus_Message* answer, Eldbus_Pending*)
{
    const std::unique_ptr<Launch> launch(static_cast<Launch*>(data));
    const char* name = nullptr;
    const char* text = nullptr;
    const bool failed = eldbus_message_error_get(answer, &name, &text);
    if (failed)
        __dlog_print(LOG_ID_MAIN, DLOG_WARN, "WATCH_PORT", "launch request to \"%s\" failed: %s",
                     launch->request.appId.c_str(), text != nullptr ? text : name);
    if (launch->callback != nullptr)
        launch->callback(&launch->request, nullptr,
                         failed ? APP_CONTROL_RESULT_FAILED : APP_CONTROL_RESULT_SUCCEEDED,
                         launch->userData);
}

int Send(const app_control_s& request, app_control_reply_cb callback, void* userData)
{
    auto launch = std::make_unique<Launch>();
    launch->request = request;
    launch->callback = callback;
    launch->userData = userData;
    Eldbus_Connection* bus = SessionBus();
    if (bus == nullptr || eldbus_connection_send(bus, NewMessage(request), SAnswerCB, launch.get(),
                                                 kAnswerMilliseconds) == nullptr)
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
