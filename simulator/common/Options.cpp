#include "common/Options.h"

#include <sstream>
#include <stdexcept>

namespace
{
constexpr double kLeastZoom = 0.5;
constexpr double kMostZoom = 4;

[[noreturn]] void Refuse(const std::string& what)
{
    throw std::invalid_argument(what);
}

// The whole text and nothing but a plain number, whatever the locale.
double ReadNumber(const std::string& text)
{
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    double number = 0;
    const bool isRead = !text.empty() && (stream >> number).eof();
    return isRead ? number : -1;
}
} // namespace

Options::Options(int argumentCount, char** arguments, const std::set<std::string>& names)
{
    for (int i = 1; i < argumentCount; i += 2)
    {
        const std::string argument = arguments[i];
        const bool isOption = argument.rfind("--", 0) == 0;
        if (!isOption || names.count(argument.substr(2)) == 0)
            Refuse("unknown argument \"" + argument + "\"");
        if (i + 1 == argumentCount)
            Refuse(argument + " needs a value");
        mValues[argument.substr(2)] = arguments[i + 1];
    }
}

const std::string& Options::Get(const std::string& name) const
{
    const auto found = mValues.find(name);
    if (found == mValues.end())
        Refuse("--" + name + " is missing");
    return found->second;
}

int Options::GetScreenSize() const
{
    const std::string& size = Get("size");
    if (size != "360" && size != "390" && size != "454")
        Refuse("--size is \"" + size + "\" (360, 390, 454)");
    return std::stoi(size);
}

double Options::GetZoom() const
{
    const auto found = mValues.find("zoom");
    if (found == mValues.end())
        return 1;
    const double zoom = ReadNumber(found->second);
    if (!(zoom >= kLeastZoom && zoom <= kMostZoom))
        Refuse("--zoom is \"" + found->second + "\" (0.5 to 4)");
    return zoom;
}
