#include "harness/PlatformState.h"
#include <cstring>

using Platform::sState;

extern "C" {

int app_control_create(app_control_h* handle)
{
    const Allocations::Pause pause;
    Recorder::AddCall("app_control_create");
    std::intptr_t answer = 0;
    const bool isTold = Recorder::TakeAnswer("app_control_create", answer);
    app_control_h made = nullptr;
    if (!isTold || sState.fillsOutputsOnFailure)
    {
        made = *handle = Platform::MakeRequest(nullptr);
    }
    Recorder::NameResult("app_control_create", made);
    return static_cast<int>(answer);
}

int app_control_destroy(app_control_h handle)
{
    Recorder::AddCall("app_control_destroy", handle);
    return Platform::Result("app_control_destroy");
}

int app_control_get_operation(app_control_h handle, char** operation)
{
    Recorder::AddCall("app_control_get_operation", handle);
    bool gives = false;
    const int result = Platform::Result("app_control_get_operation", gives);
    if (gives && handle && handle->hasOperation)
    {
        *operation = Platform::Give(handle->operation, result);
    }
    return result;
}

int app_control_set_operation(app_control_h handle, const char* operation)
{
    Recorder::AddCall("app_control_set_operation", handle, operation);
    return Platform::Result("app_control_set_operation");
}

int app_control_set_app_id(app_control_h handle, const char* id)
{
    Recorder::AddCall("app_control_set_app_id", handle, id);
    return Platform::Result("app_control_set_app_id");
}

int app_control_get_extra_data(app_control_h handle, const char* key, char** value)
{
    const Allocations::Pause pause;
    Recorder::AddCall("app_control_get_extra_data", handle, key);
    bool gives = false;
    const int result = Platform::Result("app_control_get_extra_data", gives);
    if (gives && (result == 0 || sState.fillsOutputsOnFailure))
    {
        *value = strdup(handle->extraData[key].c_str());
    }
    return result;
}

int app_control_add_extra_data(app_control_h handle, const char* key, const char* value)
{
    Recorder::AddCall("app_control_add_extra_data", handle, key, value);
    return Platform::Result("app_control_add_extra_data");
}

int app_control_foreach_extra_data(app_control_h handle, app_control_extra_data_cb callback,
                                   void* data)
{
    Recorder::AddCall("app_control_foreach_extra_data", handle, callback);
    const int result = Platform::Result("app_control_foreach_extra_data");
    if (result != 0)
    {
        return result;
    }
    for (const auto& [key, value] : handle->extraData)
    {
        if (!callback(handle, key.c_str(), data))
        {
            break;
        }
    }
    return 0;
}

int app_control_send_launch_request(app_control_h handle, app_control_reply_cb callback, void* data)
{
    Recorder::AddCall("app_control_send_launch_request", handle, callback, data);
    return Platform::Result("app_control_send_launch_request");
}

int app_control_reply_to_launch_request(app_control_h reply, app_control_h request,
                                        app_control_result_e result)
{
    Recorder::AddCall("app_control_reply_to_launch_request", reply, request, result);
    return Platform::Result("app_control_reply_to_launch_request");
}

} // extern "C"
