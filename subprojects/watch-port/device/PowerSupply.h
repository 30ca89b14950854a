#ifndef WATCH_PORT_DEVICE_POWER_SUPPLY_H
#define WATCH_PORT_DEVICE_POWER_SUPPLY_H

#include <Ecore.h>
#include <Eeze.h>
#include <functional>
#include <optional>

namespace WatchPort
{

/**
 * Reads from /sys/class/power_supply whether a battery of the system charges; nothing if the system
 * has none.
 */
std::optional<bool> ReadPowerSupplies();

/** Follows the kernel's events of batteries and chargers while it lives. */
class PowerSupplyWatch
{
public:
    /**
     * @param onEvent Called from the main loop, once at first and after each event. It may delete
     *                this object.
     */
    explicit PowerSupplyWatch(std::function<void()> onEvent);
    ~PowerSupplyWatch();
    PowerSupplyWatch(const PowerSupplyWatch&) = delete;
    PowerSupplyWatch& operator=(const PowerSupplyWatch&) = delete;

private:
    static void SBeginCB(void* data);
    static void SEventCB(const char* device, Eeze_Udev_Event event, void* data,
                         Eeze_Udev_Watch* watch);

    const std::function<void()> mOnEvent;
    Ecore_Job* mBegin = nullptr;
    Eeze_Udev_Watch* mBatteries = nullptr;
    Eeze_Udev_Watch* mChargers = nullptr;
};

} // namespace WatchPort

#endif
