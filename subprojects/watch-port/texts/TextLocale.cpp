#include "texts/TextLocale.h"

#include <clocale>
#include <string_view>

namespace WatchPort
{

namespace
{
// Gettext passes LANGUAGE over in a locale of the name "C" or "POSIX", since version 2.41 of the
// C library also in "C.UTF-8" and the like. For this name, which has no locale of its own, the C
// library takes that of "C.UTF-8", which is always installed.
constexpr char kMessages[] = "C_US.UTF-8";

bool IsC(int category)
{
    const std::string_view name = std::setlocale(category, nullptr);
    return name == "POSIX" || name.substr(0, name.find('.')) == "C";
}
} // namespace

void SetTextLocale()
{
    if (!std::setlocale(LC_ALL, "") || IsC(LC_CTYPE))
        std::setlocale(LC_CTYPE, "C.UTF-8");
    if (IsC(LC_MESSAGES) && !std::setlocale(LC_MESSAGES, kMessages))
        std::setlocale(LC_MESSAGES, "C.UTF-8");
}

} // namespace WatchPort
