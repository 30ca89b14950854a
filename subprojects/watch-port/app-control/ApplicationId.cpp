#include "app-control/ApplicationId.h"

namespace WatchPort
{

namespace
{
constexpr size_t kLongestName = 255;

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Not isalpha() and its like: a bus name is ASCII in every locale.
bool IsNameCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || IsDigit(c) || c == '-' || c == '_';
}
} // namespace

bool IsApplicationId(std::string_view text)
{
    char previous = '.';
    bool hasDot = false;
    for (const char c : text)
    {
        const bool startsElement = previous == '.';
        if (startsElement ? !IsNameCharacter(c) || IsDigit(c) : !IsNameCharacter(c) && c != '.')
            return false;
        hasDot = hasDot || c == '.';
        previous = c;
    }
    return hasDot && previous != '.' && text.size() <= kLongestName;
}

std::string ApplicationObjectPath(std::string_view applicationId)
{
    std::string path = "/";
    for (const char c : applicationId)
        path += c == '.' ? '/' : c == '-' ? '_' : c;
    return path;
}

} // namespace WatchPort
