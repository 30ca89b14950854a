#ifndef WATCH_PORT_SYSTEM_SETTINGS_TIME_FORMAT_H
#define WATCH_PORT_SYSTEM_SETTINGS_TIME_FORMAT_H

#include "system-settings/PortalClockFormat.h"

#include <functional>
#include <memory>
#include <optional>

namespace WatchPort
{

/** What the desktop last said of its clocks. */
class TimeFormat
{
public:
    /** @param onAnswer Called after each word of the desktop, an old one too. */
    explicit TimeFormat(std::function<void()> onAnswer);
    TimeFormat(const TimeFormat&) = delete;
    TimeFormat& operator=(const TimeFormat&) = delete;

    /** Whether clocks count to 24; nothing while the desktop has said nothing. */
    std::optional<bool> Get() const { return mCountsTo24; }

    /** Asks the desktop in the background, if no question is out and it is not followed. */
    void Refresh();

    /** Follows the desktop, or stops to. */
    void Follow(bool isWanted);

private:
    void OnAnswer(std::optional<bool> countsTo24);

    const std::function<void()> mOnAnswer;
    std::optional<bool> mCountsTo24;
    std::unique_ptr<PortalClockFormat> mPortal;
    bool mIsFollowed = false;
};

} // namespace WatchPort

#endif
