#include "dlog/CallSite.h"

#include <string_view>

namespace WatchPort
{

CallSite ReadCallSite(const char* format, va_list arguments)
{
    constexpr std::string_view kBeginning = "%s: %s(%d) > ";
    if (std::string_view(format).substr(0, kBeginning.size()) != kBeginning)
        return {};
    CallSite site;
    site.file = va_arg(arguments, const char*);
    site.function = va_arg(arguments, const char*);
    site.line = va_arg(arguments, int);
    return !site.file || !site.function ? CallSite() : site;
}

} // namespace WatchPort
