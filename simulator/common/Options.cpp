#include "common/Options.h"

#include <charconv>
#include <stdexcept>

namespace
{
// An X server's windows have no more pixels in a direction.
constexpr int kMostSide = 32767;

[[noreturn]] void Refuse(const std::string& what)
{
    throw std::invalid_argument(what);
}

// The whole text and nothing but digits; 0 for anything else.
int ReadNumber(const std::string& text)
{
    int number = 0;
    const char* end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end ? number : 0;
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

std::string Options::Get(const std::string& name, const std::string& usual) const
{
    const auto found = mValues.find(name);
    return found == mValues.end() ? usual : found->second;
}

int Options::GetScreenSize() const
{
    const std::string& size = Get("size");
    if (size != "360" && size != "390" && size != "454")
        Refuse("--size is \"" + size + "\" (360, 390, 454)");
    return std::stoi(size);
}

int Options::GetSide(int usual) const
{
    const std::string given = Get("side", std::to_string(usual));
    const int side = ReadNumber(given);
    if (side < 1 || side > kMostSide)
        Refuse("--side is \"" + given + "\" (1 to 32767)");
    return side;
}
