#ifndef WATCH_PORT_SYSTEM_SETTINGS_PORTAL_CLOCK_FORMAT_H
#define WATCH_PORT_SYSTEM_SETTINGS_PORTAL_CLOCK_FORMAT_H

#include "bus/BusListener.h"

#include <functional>
#include <memory>
#include <optional>

namespace WatchPort
{

/**
 * The desktop's clock format, followed through the settings portal: the key "clock-format" of
 * "org.gnome.desktop.interface", "24h" or "12h". The portal's own keys have none, and no other
 * desktop's is as widespread.
 *
 * The portal is started by the first question where the bus can do so, and by nothing after it.
 * Values of another type or text are ignored silently.
 */
class PortalClockFormat : private BusListener
{
public:
    /**
     * Told whether clocks count to 24, also when it is nothing new; nothing when the portal has no
     * such answer or has gone. Comes from the main loop, never from inside a call of this class,
     * and may delete the object that calls it.
     */
    using Callback = std::function<void(std::optional<bool> countsTo24)>;

    /** @return Null when there is no session bus; nothing is logged then. */
    static std::unique_ptr<PortalClockFormat> Follow(Callback onAnswer);

private:
    PortalClockFormat(BusConnection& bus, Callback onAnswer);

    void OnAppeared() final;
    void OnAnswer(DBusMessage* answer) override;
    void OnSignal(DBusMessage* signal) override;
    void OnGone() override;

    const Callback mOnAnswer;
    bool mHasAskedTheOldWay = false;
};

} // namespace WatchPort

#endif
