#ifndef WATCH_PORT_SYSTEM_SETTINGS_CLOCK_WATCH_H
#define WATCH_PORT_SYSTEM_SETTINGS_CLOCK_WATCH_H

#include "bus/BusProperty.h"
#include "system-settings/ZoneLink.h"

#include <Ecore.h>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace WatchPort
{

/** Notices, while it lives, that the clock is set or the time zone changes. */
class ClockWatch
{
public:
    /** @param onChanged Called from the main loop at each change; may delete the watch. */
    explicit ClockWatch(std::function<void()> onChanged);
    ~ClockWatch();
    ClockWatch(const ClockWatch&) = delete;
    ClockWatch& operator=(const ClockWatch&) = delete;

private:
    void FollowLink();
    void OnTimezone(const std::string& timezone);

    static Eina_Bool SClockSetCB(void* data, Ecore_Fd_Handler* handler);

    const std::function<void()> mOnChanged;
    int mTimer = -1;
    Ecore_Fd_Handler* mHandler = nullptr;
    std::unique_ptr<BusProperty> mService;
    std::unique_ptr<ZoneLink> mLink;
    std::optional<std::string> mTimezone;
};

} // namespace WatchPort

#endif
