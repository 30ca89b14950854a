#ifndef WATCH_PORT_SYSTEM_SETTINGS_TIME_FORMAT_H
#define WATCH_PORT_SYSTEM_SETTINGS_TIME_FORMAT_H

#include "system-settings/Following.h"
#include "system-settings/PortalClockFormat.h"

#include <functional>
#include <optional>
#include <string>

namespace WatchPort
{

/** Tells whether clocks count to 24 in a locale, a result of NormaliseLocale(). */
bool CountsTo24(const std::string& locale);

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

    /** See Following. */
    void Refresh() { mPortal.Refresh(); }
    void Follow(bool isWanted) { mPortal.Follow(isWanted); }

private:
    void OnAnswer(std::optional<bool> countsTo24);

    const std::function<void()> mOnAnswer;
    std::optional<bool> mCountsTo24;
    Following<PortalClockFormat> mPortal;
};

} // namespace WatchPort

#endif
