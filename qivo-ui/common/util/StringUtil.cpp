#include "common/util/StringUtil.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace QivoUi
{

namespace
{

// Before the places, with the sign and the point.
constexpr std::size_t kLongestFixed = std::numeric_limits<double>::max_exponent10 + 3;
constexpr std::size_t kUsualPlaces = 32;

/** The text from its number on: without blanks and a plus sign. */
std::string_view SkipToNumber(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    if (text.substr(0, 1) == "+" && text.substr(1, 1) != "-")
    {
        text.remove_prefix(1);
    }
    return text;
}

// As from a stream: no "inf" and "nan", and nothing with an exponent that has no digits.
template <typename Float> Float ReadFloat(const std::string& text)
{
    const std::string_view number = SkipToNumber(text);
    Float value = 0;
    const auto [end, error] = std::from_chars(number.begin(), number.end(), value);
    const bool isCut = end != number.end() &&
                       number.find_first_of("eE") == static_cast<std::size_t>(end - number.begin());
    bool isRead = error == std::errc() && std::isfinite(value) && !isCut;
    // A stream tells what is too large from what is too small, which it takes for 0.
    if (error == std::errc::result_out_of_range)
    {
        std::istringstream stream(text);
        isRead = static_cast<bool>(stream >> value);
    }
    if (!isRead)
    {
        throw std::runtime_error(text);
    }
    return value;
}

} // namespace

std::string StringUtil::StringReplace(std::string source, std::string from, std::string to)
{
    const std::size_t position = source.find(from);
    if (position != std::string::npos)
    {
        source.replace(position, from.length(), to);
    }
    return source;
}

std::string StringUtil::GetColorTagedString(int red, int green, int blue, int alpha, int fontSize,
                                            const std::string& text, std::string font)
{
    char tag[256];
    if (!font.empty())
    {
        std::snprintf(tag, sizeof(tag), "<color=#%02x%02x%02x%02x font_size=%d font=%s>",
                      static_cast<unsigned>(red), static_cast<unsigned>(green),
                      static_cast<unsigned>(blue), static_cast<unsigned>(alpha), fontSize,
                      font.c_str());
    }
    else
    {
        std::snprintf(tag, sizeof(tag), "<color=#%02x%02x%02x%02x font_size=%d>",
                      static_cast<unsigned>(red), static_cast<unsigned>(green),
                      static_cast<unsigned>(blue), static_cast<unsigned>(alpha), fontSize);
    }
    return tag + text + "</color>";
}

int StringUtil::StringToInt(const std::string& text)
{
    const std::string_view number = SkipToNumber(text);
    int value = 0;
    const auto [end, error] = std::from_chars(number.begin(), number.end(), value);
    if (error == std::errc::result_out_of_range)
    {
        using Limits = std::numeric_limits<int>;
        return number[0] == '-' ? Limits::min() : Limits::max();
    }
    return value;
}

long long StringUtil::StringToInt64(const std::string& text)
{
    std::string_view number = SkipToNumber(text);
    const bool isNegated = number.substr(0, 1) == "-";
    number.remove_prefix(isNegated ? 1 : 0);
    unsigned long long value = 0;
    const auto [end, error] = std::from_chars(number.begin(), number.end(), value);
    if (error != std::errc())
    {
        throw std::runtime_error(text);
    }
    return static_cast<long long>(isNegated ? 0 - value : value);
}

float StringUtil::StringToFloat(const std::string& text)
{
    return ReadFloat<float>(text);
}

double StringUtil::StringToDouble(const std::string& text)
{
    return ReadFloat<double>(text);
}

std::vector<std::string> StringUtil::Tokenize(const std::string& text,
                                              const std::string& delimiters)
{
    std::vector<std::string> tokens;
    std::size_t begin = text.find_first_not_of(delimiters);
    while (begin != std::string::npos)
    {
        const std::size_t end = text.find_first_of(delimiters, begin);
        tokens.push_back(text.substr(begin, end - begin));
        begin = text.find_first_not_of(delimiters, end);
    }
    return tokens;
}

std::string StringUtil::IntToHexaStringBy8Bit(int value)
{
    char buffer[8];
    const auto [end, error] =
        std::to_chars(std::begin(buffer), std::end(buffer), static_cast<unsigned>(value), 16);
    const std::string digits(buffer, end);
    return value <= 16 ? "0" + digits : digits;
}

std::string StringUtil::IntToString(int value)
{
    return std::to_string(value);
}

std::string StringUtil::Int64ToString(long long value)
{
    return std::to_string(value);
}

std::string StringUtil::FloatToString(float value)
{
    // As in "-1.23457e+06".
    char digits[12];
    const auto [end, error] =
        std::to_chars(std::begin(digits), std::end(digits), static_cast<double>(value),
                      std::chars_format::general, 6);
    return {digits, end};
}

std::string StringUtil::RoundOff(float value, int digits)
{
    const std::string text = FloatToString(value);
    const std::size_t point = text.find('.');
    if (point == std::string::npos)
    {
        return text;
    }
    return text.substr(0, digits != 0 ? point + static_cast<std::size_t>(digits) + 1 : point);
}

std::string StringUtil::DoubleToString(double value, int precision)
{
    const int places = precision > 0 ? precision : 6;
    char usual[kLongestFixed + kUsualPlaces];
    const auto [end, error] =
        std::to_chars(std::begin(usual), std::end(usual), value, std::chars_format::fixed, places);
    if (error == std::errc())
    {
        return {usual, end};
    }
    std::string text(kLongestFixed + static_cast<std::size_t>(places), '\0');
    char* const begin = text.data();
    text.resize(static_cast<std::size_t>(
        std::to_chars(begin, begin + text.size(), value, std::chars_format::fixed, places).ptr -
        begin));
    return text;
}

} // namespace QivoUi
