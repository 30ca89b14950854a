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
    : mOnAnswer(std::move(onAnswer)), mPortal([this] { return FollowPortal(); })
{
}

std::unique_ptr<PortalSettings> TimeFormat::FollowPortal()
{
    return PortalSettings::Follow(
        {{kDesktopInterface, "clock-format", [this](auto* value) { Take(value); }}},
        [this] { OnAnswer(); });
}

void TimeFormat::Take(DBusMessageIter* value)
{
    if (!HasSignature(value, "s"))
        return;
    const std::string_view format = ReadText(value);
    if (format == "24h" || format == "12h")
        mCountsTo24 = format == "24h";
}

void TimeFormat::OnAnswer()
{
    mPortal.OnAnswer();
    mOnAnswer();
}

} // namespace WatchPort
