#include "system-settings/TimeFormat.h"

#include <utility>

namespace WatchPort
{

TimeFormat::TimeFormat(std::function<void()> onAnswer) : mOnAnswer(std::move(onAnswer))
{
}

void TimeFormat::Refresh()
{
    if (!mPortal)
        mPortal = PortalClockFormat::Follow([this](auto countsTo24) { OnAnswer(countsTo24); });
}

void TimeFormat::Follow(bool isWanted)
{
    if (isWanted)
        Refresh();
    else if (mIsFollowed)
        mPortal.reset();
    mIsFollowed = isWanted;
}

void TimeFormat::OnAnswer(std::optional<bool> countsTo24)
{
    if (!mIsFollowed)
        mPortal.reset();
    if (!countsTo24)
        return;
    mCountsTo24 = countsTo24;
    mOnAnswer();
}

} // namespace WatchPort
