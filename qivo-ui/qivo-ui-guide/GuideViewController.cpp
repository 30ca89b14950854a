#include "qivo-ui-guide/GuideViewController.h"

#include "common/Log.h"
#include <device/battery.h>

namespace QivoUi
{

void GuideViewController::Initialize()
{
    bool isCharging = false;
    if (device_battery_is_charging(&isCharging) != 0)
    {
        QIVO_LOG_ERROR("device_battery_is_charging is error");
    }
    if (device_add_callback(DEVICE_CALLBACK_BATTERY_CHARGING, DeviceChangedCallback, this) != 0)
    {
        QIVO_LOG_ERROR("device_add_callback is error");
    }
    mGuideViewPtr = std::make_shared<GuideView>();
    mBaseViewPtr = mGuideViewPtr;
    mGuideViewPtr->CreateView();
    mGuideViewPtr->SetArrowVisible(!isCharging);
}

void GuideViewController::DeInitialize()
{
    device_remove_callback(DEVICE_CALLBACK_BATTERY_CHARGING, DeviceChangedCallback);
}

void GuideViewController::DeviceChangedCallback(device_callback_e /*type*/, void* value,
                                                void* userData)
{
    auto* pThis = static_cast<GuideViewController*>(userData);
    if (!pThis)
    {
        QIVO_LOG_ERROR("pThis is NULL");
        return;
    }
    if (!pThis->mGuideViewPtr)
    {
        QIVO_LOG_ERROR("mGuideViewPtr is NULL");
        return;
    }
    // The kind is deliberately not examined: only charger changes are registered for.
    pThis->mGuideViewPtr->SetArrowVisible(value == nullptr);
}

} // namespace QivoUi
