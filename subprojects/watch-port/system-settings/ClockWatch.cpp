#include "system-settings/ClockWatch.h"

#include "base/CallBack.h"
#include "dlog/PortLog.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <limits>
#include <sys/timerfd.h>
#include <unistd.h>
#include <utility>

namespace WatchPort
{

namespace
{
constexpr BusPropertyAddress kTimezone = {"org.freedesktop.timedate1", "/org/freedesktop/timedate1",
                                          "org.freedesktop.timedate1", "Timezone", "s"};

// The timer never expires; all it does is to be cancelled each time the clock is set.
bool Arm(int timer)
{
    itimerspec never{};
    never.it_value.tv_sec = std::numeric_limits<time_t>::max();
    constexpr int kFlags = TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET;
    return timerfd_settime(timer, kFlags, &never, nullptr) == 0;
}
} // namespace

ClockWatch::ClockWatch(std::function<void()> onChanged) : mOnChanged(std::move(onChanged))
{
    mService = BusProperty::Follow(
        kTimezone,
        [this](DBusMessageIter* value)
        {
            mLink.reset();
            OnTimezone(ReadText(value));
        },
        [this] { FollowLink(); });
    if (!mService)
        FollowLink();
    mTimer = timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC);
    if (mTimer >= 0 && Arm(mTimer))
        mHandler =
            ecore_main_fd_handler_add(mTimer, ECORE_FD_READ, SClockSetCB, this, nullptr, nullptr);
    if (!mHandler)
        PORT_LOG_WARN("A clock that is set will not be noticed: %s", std::strerror(errno));
}

ClockWatch::~ClockWatch()
{
    if (mHandler)
        ecore_main_fd_handler_del(mHandler);
    if (mTimer >= 0)
        close(mTimer);
}

void ClockWatch::FollowLink()
{
    if (!mTimezone)
        mTimezone = ReadZoneLink();
    if (!mLink)
        mLink = std::make_unique<ZoneLink>([this] { OnTimezone(ReadZoneLink()); });
}

void ClockWatch::OnTimezone(const std::string& timezone)
{
    const std::optional<std::string> before = std::exchange(mTimezone, timezone);
    if (before && *before != timezone)
        CallBack(mOnChanged);
}

Eina_Bool ClockWatch::SClockSetCB(void* data, Ecore_Fd_Handler* /*handler*/)
{
    auto* self = static_cast<ClockWatch*>(data);
    uint64_t expirations = 0;
    // The cancelled timer goes on: its end is as far away as before.
    if (read(self->mTimer, &expirations, sizeof expirations) < 0 && errno == ECANCELED)
        CallBack(self->mOnChanged);
    return ECORE_CALLBACK_RENEW;
}

} // namespace WatchPort
