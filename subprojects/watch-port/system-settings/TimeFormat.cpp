#include "system-settings/TimeFormat.h"

#include <utility>

namespace WatchPort
{

TimeFormat::TimeFormat(std::function<void()> onAnswer)
    : mOnAnswer(std::move(onAnswer)),
      mPortal([this]
              { return PortalClockFormat::Follow([this](auto answer) { OnAnswer(answer); }); })
{
}

void TimeFormat::OnAnswer(std::optional<bool> countsTo24)
{
    mPortal.OnAnswer();
    if (!countsTo24)
        return;
    mCountsTo24 = countsTo24;
    mOnAnswer();
}

} // namespace WatchPort
