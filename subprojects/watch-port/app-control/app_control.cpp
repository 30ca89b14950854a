#include "app-control/ApplicationId.h"
#include "app-control/LaunchCall.h"
#include "app-control/LaunchOutbox.h"
#include "app-control/LaunchRequest.h"
#include "app-control/NameLookup.h"
#include "app-control/messages/ExtraData.h"
#include "base/Printable.h"
#include "base/Utf8.h"
#include "bus/Buses.h"
#include "dlog/PortLog.h"

#include <cstring>
#include <new>
#include <vector>

using namespace WatchPort;

namespace
{
int Reject(const char* function, const char* reason)
{
    return PORT_REFUSE(APP_CONTROL_ERROR_INVALID_PARAMETER, function, "%s", reason);
}

int RefuseForMemory(const char* function)
{
    return PORT_REFUSE(APP_CONTROL_ERROR_OUT_OF_MEMORY, function, "out of memory");
}

bool IsText(const char* text)
{
    return text && IsUtf8(text);
}

bool IsNonEmptyText(const char* text)
{
    return IsText(text) && *text != '\0';
}

int CopyOut(const char* function, const std::string& text, char** copy)
{
    char* const made = strdup(text.c_str());
    if (!made)
        return RefuseForMemory(function);
    *copy = made;
    return APP_CONTROL_ERROR_NONE;
}

std::vector<std::string> KeysOf(const LaunchRequest& request)
{
    std::vector<std::string> keys;
    for (const auto& entry : request.extraData)
        keys.push_back(entry.first);
    return keys;
}

// Null when the session bus has gone. Never released, as its bus is not.
LaunchOutbox* SessionOutbox()
{
    BusConnection* const bus = SessionBus();
    if (!bus)
        return nullptr;
    static auto& sOutbox = *new LaunchOutbox(*bus);
    return &sOutbox;
}
} // namespace

int app_control_create(app_control_h* app_control)
try
{
    if (!app_control)
        return Reject(__func__, "the pointer for the handle is null");
    *app_control = new LaunchRequest;
    return APP_CONTROL_ERROR_NONE;
}
catch (const std::bad_alloc&)
{
    return RefuseForMemory(__func__);
}

int app_control_destroy(app_control_h app_control)
{
    if (!app_control)
        return Reject(__func__, "the handle is null");
    delete app_control;
    return APP_CONTROL_ERROR_NONE;
}

int app_control_get_operation(app_control_h app_control, char** operation)
{
    if (!app_control || !operation)
        return Reject(__func__, "the handle or the place for the operation is null");
    return CopyOut(__func__, app_control->operation, operation);
}

int app_control_set_operation(app_control_h app_control, const char* operation)
try
{
    if (!app_control)
        return Reject(__func__, "the handle is null");
    if (!IsNonEmptyText(operation))
        return Reject(__func__, "the operation is null, empty or not UTF-8");
    app_control->operation = operation;
    return APP_CONTROL_ERROR_NONE;
}
catch (const std::bad_alloc&)
{
    return RefuseForMemory(__func__);
}

int app_control_set_app_id(app_control_h app_control, const char* app_id)
try
{
    if (!app_control || !app_id)
        return Reject(__func__, "the handle or the application id is null");
    if (!IsApplicationId(app_id))
        return PORT_REFUSE(APP_CONTROL_ERROR_INVALID_PARAMETER, __func__,
                           "%s is not an application id (such as \"org.example.Clock\")",
                           Quoted(app_id).c_str());
    app_control->appId = app_id;
    return APP_CONTROL_ERROR_NONE;
}
catch (const std::bad_alloc&)
{
    return RefuseForMemory(__func__);
}

int app_control_get_extra_data(app_control_h app_control, const char* key, char** value)
try
{
    if (!app_control || !key || !value)
        return Reject(__func__, "the handle, the key or the place for the value is null");
    const auto entry = app_control->extraData.find(key);
    return entry == app_control->extraData.end() ? APP_CONTROL_ERROR_KEY_NOT_FOUND
                                                 : CopyOut(__func__, entry->second, value);
}
catch (const std::bad_alloc&)
{
    return RefuseForMemory(__func__);
}

int app_control_add_extra_data(app_control_h app_control, const char* key, const char* value)
try
{
    if (!app_control)
        return Reject(__func__, "the handle is null");
    if (!IsNonEmptyText(key))
        return Reject(__func__, "the key is null, empty or not UTF-8");
    if (!IsText(value))
        return Reject(__func__, "the value is null or not UTF-8");
    app_control->extraData.insert_or_assign(key, value);
    return APP_CONTROL_ERROR_NONE;
}
catch (const std::bad_alloc&)
{
    return RefuseForMemory(__func__);
}

int app_control_foreach_extra_data(app_control_h app_control, app_control_extra_data_cb callback,
                                   void* user_data)
{
    if (!app_control || !callback)
        return Reject(__func__, "the handle or the callback is null");
    std::vector<std::string> keys;
    // Only here: what the callback throws is the caller's own.
    try
    {
        keys = KeysOf(*app_control);
    }
    catch (const std::bad_alloc&)
    {
        return RefuseForMemory(__func__);
    }
    for (const std::string& key : keys)
    {
        if (!callback(app_control, key.c_str(), user_data))
            break;
    }
    return APP_CONTROL_ERROR_NONE;
}

int app_control_send_launch_request(app_control_h app_control, app_control_reply_cb callback,
                                    void* user_data)
try
{
    if (!app_control)
        return Reject(__func__, "the handle is null");
    if (app_control->appId.empty())
        return PORT_REFUSE(APP_CONTROL_ERROR_APP_ID_NOT_SET, __func__, "no application id is set");
    if (IsTooBig(*app_control))
        return Reject(__func__, kTooBig);
    const char* const id = app_control->appId.c_str();
    switch (AskSessionBus(id))
    {
    case BusAnswer::NoBus:
        return PORT_REFUSE(APP_CONTROL_ERROR_NO_SESSION_BUS, __func__,
                           "\"%s\": there is no session bus, or it does not answer", id);
    case BusAnswer::Unknown:
        return PORT_REFUSE(APP_CONTROL_ERROR_APP_NOT_FOUND, __func__,
                           "\"%s\" is not running, and the session bus cannot start it", id);
    case BusAnswer::Known:
        break;
    }
    LaunchOutbox* const outbox = SessionOutbox();
    if (!outbox || !outbox->Send(*app_control, callback, user_data))
        return PORT_REFUSE(APP_CONTROL_ERROR_NOT_SENT, __func__,
                           "\"%s\": the connection to the session bus broke", id);
    return APP_CONTROL_ERROR_NONE;
}
catch (const std::bad_alloc&)
{
    return RefuseForMemory(__func__);
}

// A caller in C may pass any number as a result.
__attribute__((no_sanitize("enum"))) int
app_control_reply_to_launch_request(app_control_h reply, app_control_h request,
                                    app_control_result_e result)
try
{
    if (!reply || !request)
        return Reject(__func__, "the reply or the request is null");
    if (result != APP_CONTROL_RESULT_SUCCEEDED && result != APP_CONTROL_RESULT_FAILED)
        return Reject(__func__, "the result is neither SUCCEEDED (0) nor FAILED (-1)");
    LaunchCall* const call = request->call.get();
    if (!call || !call->WishesReply() || !call->IsThere())
        return PORT_REFUSE(APP_CONTROL_ERROR_NO_SENDER, __func__, "nobody waits for an answer");
    if (call->IsAnswered())
        return PORT_REFUSE(APP_CONTROL_ERROR_ALREADY_REPLIED, __func__,
                           "the request has already been answered");
    if (IsTooBig(*reply))
        return Reject(__func__, kTooBig);
    call->SendReply(*reply, result);
    return APP_CONTROL_ERROR_NONE;
}
catch (const std::bad_alloc&)
{
    return RefuseForMemory(__func__);
}
