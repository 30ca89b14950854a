#ifndef WATCH_PORT_SYSTEM_SETTINGS_TIME_FORMAT_H
#define WATCH_PORT_SYSTEM_SETTINGS_TIME_FORMAT_H

#include "system-settings/Following.h"
#include "system-settings/PortalSettings.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace WatchPort
{

/** Tells whether clocks count to 24 in a locale, a result of NormaliseLocale(). */
bool CountsTo24(const std::string& locale);

/**
 * What the desktop last said of its clocks: the setting "clock-format", "24h" or "12h". The
 * portal's own namespaces have none, and no other desktop's is as widespread. Values of another
 * type or text are ignored silently.
 */
class TimeFormat
{
public:
    /** @param onAnswer Called after each word of the desktop, an old one too. */
    explicit TimeFormat(std::function<void()> onAnswer);
    TimeFormat(const TimeFormat&) = delete;
    TimeFormat& operator=(const TimeFormat&) = delete;

    /** Whether clocks count to 24; nothing while the desktop has said nothing. */
    std::optional<bool> Get() const { return mCountsTo24; }

    /** See Following. */
    void Refresh() { mPortal.Refresh(); }
    void Follow(bool isWanted) { mPortal.Follow(isWanted); }

private:
    std::unique_ptr<PortalSettings> FollowPortal();
    void Take(DBusMessageIter* value);
    void OnAnswer();

    const std::function<void()> mOnAnswer;
    std::optional<bool> mCountsTo24;
    Following<PortalSettings> mPortal;
};

} // namespace WatchPort

#endif
