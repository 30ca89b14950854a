#include "common/util/StringUtil.h"

#include <charconv>
#include <cstdio>
#include <iterator>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <type_traits>

namespace QivoUi
{

namespace
{

// Long enough for any integer, and for six significant digits.
constexpr std::size_t kShortNumber = 32;

// Before the point, with the sign and the point itself.
constexpr std::size_t kLongestFixed = std::numeric_limits<double>::max_exponent10 + 3;
constexpr std::size_t kUsualPlaces = 32;

bool IsDigit(char character)
{
    return character >= '0' && character <= '9';
}

bool IsBlank(char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

/** The text from its number on: without blanks and a plus sign. */
std::string_view SkipToNumber(std::string_view text)
{
    while (!text.empty() && IsBlank(text[0]))
    {
        text.remove_prefix(1);
    }
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')
    {
        text.remove_prefix(1);
    }
    return text;
}

/** A stream's own answer, which the usual cases below are only a faster way to. */
template <typename Number> bool ReadFromStream(const std::string& text, Number& value)
{
    std::istringstream stream(text);
    stream >> value;
    return !stream.fail();
}

// A stream negates what it reads as unsigned.
template <typename Integer> bool ReadInteger(const std::string& text, Integer& value)
{
    std::string_view number = SkipToNumber(text);
    const bool isNegated = std::is_unsigned_v<Integer> && !number.empty() && number[0] == '-';
    number.remove_prefix(isNegated ? 1 : 0);
    const auto [end, error] = std::from_chars(number.begin(), number.end(), value);
    if (error != std::errc())
    {
        return ReadFromStream(text, value);
    }
    value = isNegated ? 0 - value : value;
    return true;
}

// A stream takes no "inf" and "nan", and nothing with an exponent that has no digits.
template <typename Float> bool ReadFloat(const std::string& text, Float& value)
{
    const std::string_view number = SkipToNumber(text);
    const std::size_t first = !number.empty() && number[0] == '-' ? 1 : 0;
    if (number.size() > first && (IsDigit(number[first]) || number[first] == '.'))
    {
        const auto [end, error] = std::from_chars(number.begin(), number.end(), value);
        const bool isCut = end != number.end() && (*end == 'e' || *end == 'E');
        if (error == std::errc() && !isCut)
        {
            return true;
        }
    }
    value = 0;
    return ReadFromStream(text, value);
}

template <typename Integer> std::string WriteInteger(Integer value, int base = 10)
{
    char digits[kShortNumber];
    const auto [end, error] = std::to_chars(std::begin(digits), std::end(digits), value, base);
    return {digits, end};
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
    int value = 0;
    ReadInteger(text, value);
    return value;
}

long long StringUtil::StringToInt64(const std::string& text)
{
    unsigned long long value = 0;
    if (!ReadInteger(text, value))
    {
        throw std::runtime_error(text);
    }
    return static_cast<long long>(value);
}

float StringUtil::StringToFloat(const std::string& text)
{
    float value = 0;
    if (!ReadFloat(text, value))
    {
        throw std::runtime_error(text);
    }
    return value;
}

double StringUtil::StringToDouble(const std::string& text)
{
    double value = 0;
    if (!ReadFloat(text, value))
    {
        throw std::runtime_error(text);
    }
    return value;
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
    if (value == 0)
    {
        return "00";
    }
    const std::string digits = WriteInteger(static_cast<unsigned>(value), 16);
    return value <= 16 ? "0" + digits : digits;
}

std::string StringUtil::IntToString(int value)
{
    return WriteInteger(value);
}

std::string StringUtil::Int64ToString(long long value)
{
    return WriteInteger(value);
}

std::string StringUtil::FloatToString(float value)
{
    char digits[kShortNumber];
    const auto [end, error] =
        std::to_chars(std::begin(digits), std::end(digits), static_cast<double>(value),
                      std::chars_format::general, 6);
    return {digits, end};
}

std::string StringUtil::RoundOff(float value, int digits)
{
    const std::string text = FloatToString(value);
    if (value == 0)
    {
        return text;
    }
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
