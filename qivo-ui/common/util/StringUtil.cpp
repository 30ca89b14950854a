#include "common/util/StringUtil.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <limits>
#include <sstream>
#include <stdexcept>

namespace QivoUi
{

namespace
{

// Before the places, with the sign and the point.
constexpr std::size_t kLongestFixed = std::numeric_limits<double>::max_exponent10 + 3;
constexpr std::size_t kUsualPlaces = 32;

[[noreturn]] void Reject(const std::string& text)
{
    throw std::runtime_error(text);
}

bool IsBlank(char byte)
{
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

/** Where the number of the text begins: behind blanks and a plus sign. */
const char* FindNumber(const std::string& text)
{
    // The null byte at the end is neither.
    const char* at = text.c_str();
    while (IsBlank(*at))
    {
        ++at;
    }
    return at[0] == '+' && at[1] != '-' ? at + 1 : at;
}

bool IsExponentMark(char byte)
{
    return byte == 'e' || byte == 'E';
}

// As from a stream: no "inf" and "nan", and nothing with an exponent that has no digits.
template <typename Float> Float ReadFloat(const std::string& text)
{
    const char* const number = FindNumber(text);
    Float value = 0;
    const auto [end, error] = std::from_chars(number, text.data() + text.size(), value);
    const bool isCut = IsExponentMark(*end) && std::none_of(number, end, IsExponentMark);
    bool isRead = error == std::errc() && std::isfinite(value) && !isCut;
    // A stream tells what is too large from what is too small, which it takes for 0.
    if (error == std::errc::result_out_of_range)
    {
        std::istringstream stream(text);
        isRead = static_cast<bool>(stream >> value);
    }
    if (!isRead)
    {
        Reject(text);
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
    const char* const number = FindNumber(text);
    int value = 0;
    const auto [end, error] = std::from_chars(number, text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range)
    {
        using Limits = std::numeric_limits<int>;
        return *number == '-' ? Limits::min() : Limits::max();
    }
    return value;
}

long long StringUtil::StringToInt64(const std::string& text)
{
    const char* const number = FindNumber(text);
    const bool isNegated = *number == '-';
    unsigned long long value = 0;
    const auto [end, error] = std::from_chars(number + isNegated, text.data() + text.size(), value);
    if (error != std::errc())
    {
        Reject(text);
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
        tokens.emplace_back(text, begin, end - begin);
        begin = text.find_first_not_of(delimiters, end);
    }
    return tokens;
}

std::string StringUtil::IntToHexaStringBy8Bit(int value)
{
    char buffer[9] = {'0'};
    char* const digits = buffer + 1;
    const auto [end, error] =
        std::to_chars(digits, std::end(buffer), static_cast<unsigned>(value), 16);
    return {value <= 16 ? buffer : digits, end};
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
