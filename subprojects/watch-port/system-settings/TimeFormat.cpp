#include "system-settings/TimeFormat.h"

#include "texts/LocaleName.h"

#include <algorithm>
#include <iterator>
#include <langinfo.h>
#include <locale.h>
#include <string_view>
#include <utility>

namespace WatchPort
{

bool CountsTo24(const std::string& locale)
{
    if (const locale_t known = newlocale(LC_TIME_MASK, locale.c_str(), nullptr))
    {
        const std::string_view format = nl_langinfo_l(T_FMT, known);
        const bool hasHalfDays = format.find("%r") != format.npos ||
                                 format.find("%I") != format.npos ||
                                 format.find("%l") != format.npos;
        freelocale(known);
        return !hasHalfDays;
    }
    constexpr std::string_view kHalfDays[] = {"AU", "CA", "CO", "EG", "IN", "MY",
                                              "NZ", "PH", "PK", "SA", "US"};
    const std::string_view territory = TerritoryOf(locale);
    return std::find(std::begin(kHalfDays), std::end(kHalfDays), territory) == std::end(kHalfDays);
}

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
