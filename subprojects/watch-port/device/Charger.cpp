#include "device/Charger.h"

#include "base/ApplicationCalls.h"

#include <algorithm>
#include <cstdint>

namespace WatchPort
{

namespace
{
constexpr BusPropertyAddress kState = {"org.freedesktop.UPower",
                                       "/org/freedesktop/UPower/devices/DisplayDevice",
                                       "org.freedesktop.UPower.Device", "State", "u"};
constexpr std::chrono::milliseconds kPatience(500);
constexpr uint32_t kStateCharging = 1;

bool IsCharging(DBusMessageIter* value)
{
    uint32_t state = 0;
    dbus_message_iter_get_basic(value, &state);
    return state == kStateCharging;
}
} // namespace

Charger& Charger::GetInstance()
{
    static auto& sInstance = *new Charger;
    return sInstance;
}

std::optional<bool> Charger::Read()
{
    std::optional<bool> isCharging;
    if (!BusProperty::Read(kState, kPatience, [&](auto* value) { isCharging = IsCharging(value); }))
        isCharging = ReadPowerSupplies();
    mWasRead = true;
    // Callbacks get each change, also one that a read has seen before.
    if (mRegistrations.empty())
        mIsCharging = isCharging.value_or(false);
    return isCharging;
}

bool Charger::AddCallback(device_changed_cb callback, void* userData)
{
    if (Find(callback) != mRegistrations.end())
        return false;
    if (!mWasRead)
        Read();
    mRegistrations.reserve(mRegistrations.size() + 1);
    if (mRegistrations.empty())
        Follow();
    mRegistrations.push_back({callback, userData});
    return true;
}

bool Charger::RemoveCallback(device_changed_cb callback)
{
    const auto registration = Find(callback);
    if (registration == mRegistrations.end())
        return false;
    mRegistrations.erase(registration);
    if (mRegistrations.empty())
    {
        mUPower.reset();
        mKernel.reset();
    }
    return true;
}

std::vector<Charger::Registration>::iterator Charger::Find(device_changed_cb callback)
{
    return std::find_if(mRegistrations.begin(), mRegistrations.end(),
                        [=](const Registration& known) { return known.callback == callback; });
}

void Charger::Follow()
{
    mUPower = BusProperty::Follow(
        kState,
        [this](DBusMessageIter* value)
        {
            mKernel.reset();
            SetCharging(IsCharging(value));
        },
        [this] { FollowKernel(); });
    if (!mUPower)
        FollowKernel();
}

void Charger::FollowKernel()
{
    if (!mKernel)
        mKernel = std::make_unique<PowerSupplyWatch>([this] { OnKernelEvent(); });
}

void Charger::OnKernelEvent()
{
    const std::optional<bool> isCharging = ReadPowerSupplies();
    if (isCharging)
        SetCharging(*isCharging);
}

void Charger::SetCharging(bool isCharging)
{
    if (isCharging == mIsCharging)
        return;
    mIsCharging = isCharging;
    void* value = reinterpret_cast<void*>(static_cast<intptr_t>(isCharging));
    for (const Registration& known : std::vector<Registration>(mRegistrations))
    {
        // A callback may have removed another one, or run the main loop into the next change.
        const auto registration = Find(known.callback);
        if (registration != mRegistrations.end() && mIsCharging == isCharging &&
            MayCallApplication())
            known.callback(DEVICE_CALLBACK_BATTERY_CHARGING, value, registration->userData);
    }
}

} // namespace WatchPort
