#ifndef WATCH_PORT_DEVICE_CHARGER_H
#define WATCH_PORT_DEVICE_CHARGER_H

#include "bus/BusProperty.h"
#include "device/PowerSupply.h"
#include <device/callback.h>

#include <memory>
#include <optional>
#include <vector>

namespace WatchPort
{

/** Whether the battery charges, and the callbacks for it. Lives as long as the process. */
class Charger
{
public:
    static Charger& GetInstance();

    /** Reads the state from UPower, else from the kernel; nothing when neither knows. */
    std::optional<bool> Read();

    /** @return False when the callback has already been added. */
    bool AddCallback(device_changed_cb callback, void* userData);

    /** @return False when the callback has not been added. */
    bool RemoveCallback(device_changed_cb callback);

private:
    struct Registration
    {
        device_changed_cb callback;
        void* userData;
    };

    Charger() = default;

    std::vector<Registration>::iterator Find(device_changed_cb callback);
    void Follow();
    void FollowKernel();
    void OnKernelEvent();
    void SetCharging(bool isCharging);

    std::vector<Registration> mRegistrations;
    std::unique_ptr<BusProperty> mUPower;
    std::unique_ptr<PowerSupplyWatch> mKernel;
    bool mWasRead = false;
    bool mIsCharging = false;
};

} // namespace WatchPort

#endif
