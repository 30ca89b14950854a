#include "app-control/AppControl.h"
#include "app-control/ApplicationId.h"
#include "app-control/LaunchRequest.h"
#include "base/Utf8.h"
#include "dlog/PortLog.h"

#include <cstring>
#include <new>
#include <vector>

using namespace WatchPort;

namespace
{
int Fail(app_control_error_e error, const char* function, const char* reason)
{
    PORT_LOG_ERROR("%s: %s", function, reason);
    return error;
}

int Reject(const char* function, const char* reason)
{
    return Fail(APP_CONTROL_ERROR_INVALID_PARAMETER, function, reason);
}

template <typename Work> int WithinMemory(const char* function, Work work)
try
{
    return work();
}
catch (const std::bad_alloc&)
{
    return Fail(APP_CONTROL_ERROR_OUT_OF_MEMORY, function, "out of memory");
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
        return Fail(APP_CONTROL_ERROR_OUT_OF_MEMORY, function, "out of memory");
    *copy = made;
    return APP_CONTROL_ERROR_NONE;
}
} // namespace

int app_control_create(app_control_h* app_control)
{
    if (!app_control)
        return Reject(__func__, "no place for the handle");
    return WithinMemory(__func__,
                        [app_control]
                        {
                            *app_control = new app_control_s;
                            return APP_CONTROL_ERROR_NONE;
                        });
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
{
    if (!app_control)
        return Reject(__func__, "the handle is null");
    if (!IsNonEmptyText(operation))
        return Reject(__func__, "the operation is null, empty or not UTF-8");
    return WithinMemory(__func__,
                        [=]
                        {
                            app_control->operation = operation;
                            return APP_CONTROL_ERROR_NONE;
                        });
}

int app_control_set_app_id(app_control_h app_control, const char* app_id)
{
    if (!app_control || !app_id)
        return Reject(__func__, "the handle or the application id is null");
    return WithinMemory(
        __func__,
        [=]
        {
            if (!IsApplicationId(app_id))
            {
                const std::string shown = '"' + std::string(app_id) + '"';
                return Reject(
                    "app_control_set_app_id",
                    (shown + " is no application id such as \"org.example.Clock\"").c_str());
            }
            app_control->appId = app_id;
            return static_cast<int>(APP_CONTROL_ERROR_NONE);
        });
}

int app_control_get_extra_data(app_control_h app_control, const char* key, char** value)
{
    if (!app_control || !key || !value)
        return Reject(__func__, "the handle, the key or the place for the value is null");
    return WithinMemory(__func__,
                        [=]
                        {
                            const auto entry = app_control->extraData.find(key);
                            if (entry == app_control->extraData.end())
                                return static_cast<int>(APP_CONTROL_ERROR_KEY_NOT_FOUND);
                            return CopyOut("app_control_get_extra_data", entry->second, value);
                        });
}

int app_control_add_extra_data(app_control_h app_control, const char* key, const char* value)
{
    if (!app_control)
        return Reject(__func__, "the handle is null");
    if (!IsNonEmptyText(key))
        return Reject(__func__, "the key is null, empty or not UTF-8");
    if (!IsText(value))
        return Reject(__func__, "the value is null or not UTF-8");
    return WithinMemory(__func__,
                        [=]
                        {
                            app_control->extraData.insert_or_assign(key, value);
                            return APP_CONTROL_ERROR_NONE;
                        });
}

int app_control_foreach_extra_data(app_control_h app_control, app_control_extra_data_cb callback,
                                   void* user_data)
{
    if (!app_control || !callback)
        return Reject(__func__, "the handle or the callback is null");
    std::vector<std::string> keys;
    const int result = WithinMemory(__func__,
                                    [&]
                                    {
                                        for (const auto& entry : app_control->extraData)
                                            keys.push_back(entry.first);
                                        return APP_CONTROL_ERROR_NONE;
                                    });
    for (const std::string& key : keys)
    {
        if (result != APP_CONTROL_ERROR_NONE || !callback(app_control, key.c_str(), user_data))
            break;
    }
    return result;
}

int app_control_send_launch_request(app_control_h app_control, app_control_reply_cb callback,
                                    void* user_data)
{
    if (!app_control)
        return Reject(__func__, "the handle is null");
    return WithinMemory(__func__,
                        [=] { return SendLaunchRequest(*app_control, callback, user_data); });
}

// A caller in C may pass any number as a result.
__attribute__((no_sanitize("enum"))) int
app_control_reply_to_launch_request(app_control_h reply, app_control_h request,
                                    app_control_result_e result)
{
    if (!reply || !request)
        return Reject(__func__, "the reply or the request is null");
    if (result != APP_CONTROL_RESULT_SUCCEEDED && result != APP_CONTROL_RESULT_FAILED)
        return Reject(__func__, "the result is neither SUCCEEDED (0) nor FAILED (-1)");
    return WithinMemory(__func__, [=] { return ReplyToLaunchRequest(*reply, *request, result); });
}
