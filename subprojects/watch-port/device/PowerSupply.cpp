#include "device/PowerSupply.h"

#include "base/CallBack.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

namespace WatchPort
{

namespace
{
constexpr char kDirectory[] = "/sys/class/power_supply";
constexpr int kAllEvents = 0;

std::string ReadAttribute(const std::filesystem::path& supply, const char* name)
{
    std::string value;
    std::getline(std::ifstream(supply / name), value);
    return value;
}

bool IsSystemBattery(const std::filesystem::path& supply)
{
    return ReadAttribute(supply, "type") == "Battery" && ReadAttribute(supply, "scope") != "Device";
}
} // namespace

std::optional<bool> ReadPowerSupplies()
{
    std::optional<bool> isCharging;
    std::error_code error;
    std::filesystem::directory_iterator supply(kDirectory, error);
    for (; !error && supply != std::filesystem::directory_iterator(); supply.increment(error))
    {
        if (IsSystemBattery(supply->path()))
            isCharging =
                isCharging.value_or(false) || ReadAttribute(supply->path(), "status") == "Charging";
    }
    return isCharging;
}

PowerSupplyWatch::PowerSupplyWatch(std::function<void()> onEvent) : mOnEvent(std::move(onEvent))
{
    eeze_init();
    mBatteries = eeze_udev_watch_add(EEZE_UDEV_TYPE_POWER_BAT, kAllEvents, SEventCB, this);
    mChargers = eeze_udev_watch_add(EEZE_UDEV_TYPE_POWER_AC, kAllEvents, SEventCB, this);
    mBegin = ecore_job_add(SBeginCB, this);
}

PowerSupplyWatch::~PowerSupplyWatch()
{
    if (mBegin)
        ecore_job_del(mBegin);
    for (Eeze_Udev_Watch* watch : {mBatteries, mChargers})
    {
        if (watch)
            eeze_udev_watch_del(watch);
    }
    eeze_shutdown();
}

void PowerSupplyWatch::SBeginCB(void* data)
{
    auto* self = static_cast<PowerSupplyWatch*>(data);
    self->mBegin = nullptr;
    CallBack(self->mOnEvent);
}

void PowerSupplyWatch::SEventCB(const char* device, Eeze_Udev_Event /*event*/, void* data,
                                Eeze_Udev_Watch* /*watch*/)
{
    eina_stringshare_del(device);
    CallBack(static_cast<PowerSupplyWatch*>(data)->mOnEvent);
}

} // namespace WatchPort
