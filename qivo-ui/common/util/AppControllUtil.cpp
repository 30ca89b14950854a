#include "common/util/AppControllUtil.h"

#include "common/Log.h"
#include "common/RuntimeError.h"
#include <cstdlib>

using QivoUi::ExtraDataMap;
using QivoUi::ExtraDataMapPtr;
using QivoUi::ThrowRuntimeError;

namespace
{

void AddExtraData(app_control_h handle, const ExtraDataMapPtr& extraData)
{
    if (!extraData)
    {
        return;
    }
    for (const auto& [key, value] : *extraData)
    {
        if (!key.empty() && !value.empty())
        {
            app_control_add_extra_data(handle, key.c_str(), value.c_str());
        }
    }
}

// The caller destroys the handle, also when a step has thrown.
void Launch(const char* function, app_control_h& handle, const std::string& appId,
            const std::string& operation, const ExtraDataMapPtr& extraData)
{
    if (app_control_create(&handle) < 0)
    {
        ThrowRuntimeError(function, "service handle create failed!");
    }
    if (!handle)
    {
        ThrowRuntimeError(function, "service handle is NULL");
    }
    if (app_control_set_app_id(handle, appId.c_str()) < 0)
    {
        ThrowRuntimeError(function, "Fail to set package");
    }
    if (app_control_add_extra_data(handle, "__FAKE_EFFECT__", "ON") != 0)
    {
        // Deliberately names another key than the one set.
        ThrowRuntimeError(function, "Fail to set APP_CONTROL_DATA_SPLASH_IMAGE");
    }
    if (!operation.empty() && app_control_set_operation(handle, operation.c_str()) != 0)
    {
        ThrowRuntimeError(function, "Fail to set operation");
    }
    AddExtraData(handle, extraData);
    if (app_control_send_launch_request(handle, nullptr, nullptr) < 0)
    {
        ThrowRuntimeError(function, "Fail to launch request");
    }
}

} // namespace

// The handle goes after the log line, and each line names the operation that failed.
void AppControllUtil::LaunchApp(std::string appId, std::string operation)
{
    app_control_h handle = nullptr;
    try
    {
        Launch(__func__, handle, appId, operation, nullptr);
    }
    catch (const std::exception& failure)
    {
        QIVO_LOG_ERROR("exception !! [%s]", failure.what());
    }
    if (handle)
    {
        app_control_destroy(handle);
    }
}

void AppControllUtil::LaucnhAppWithExtraData(std::string appId, std::string operation,
                                             ExtraDataMapPtr extraData)
{
    app_control_h handle = nullptr;
    try
    {
        Launch(__func__, handle, appId, operation, extraData);
    }
    catch (const std::exception& failure)
    {
        QIVO_LOG_ERROR("exception !! [%s]", failure.what());
    }
    if (handle)
    {
        app_control_destroy(handle);
    }
}

void AppControllUtil::LaucnhAppWithExtraDataWhenNotPowerSavingMode(std::string /*appId*/,
                                                                   std::string /*operation*/,
                                                                   ExtraDataMapPtr /*extraData*/)
{
}

void AppControllUtil::ReplyAppControl(app_control_h request, bool succeeded,
                                      ExtraDataMapPtr extraData)
{
    app_control_h reply = nullptr;
    int ret = app_control_create(&reply);
    if (ret != 0)
    {
        QIVO_LOG_ERROR("app_control_create failed, %d", ret);
        return;
    }
    if (succeeded)
    {
        ret = app_control_reply_to_launch_request(reply, request, APP_CONTROL_RESULT_SUCCEEDED);
    }
    else
    {
        AddExtraData(reply, extraData);
        ret = app_control_reply_to_launch_request(reply, request, APP_CONTROL_RESULT_FAILED);
    }
    if (ret != 0)
    {
        QIVO_LOG_ERROR("app_control_reply_to_launch_request failed! [%d]", ret);
    }
    app_control_destroy(reply);
    // Deliberately after its use: a null request is only reported, nothing is skipped.
    if (!request)
    {
        QIVO_LOG_ERROR("Invalid appControl value");
    }
}

ExtraDataMapPtr AppControllUtil::GetExtraData(app_control_h request)
{
    auto extraData = std::make_shared<ExtraDataMap>();
    app_control_foreach_extra_data(request, ForEachExtraData, extraData.get());
    return extraData;
}

bool AppControllUtil::ForEachExtraData(app_control_h request, const char* key, void* userData)
{
    auto* extraData = static_cast<ExtraDataMap*>(userData);
    if (!extraData)
    {
        QIVO_LOG_ERROR("map is NULL");
        return false;
    }
    char* value = nullptr;
    app_control_get_extra_data(request, key, &value);
    const std::string valueString = value ? value : "";
    std::free(value);
    (*extraData)[key] = valueString;
    return true;
}
