#include "common/util/StringUtil.h"

#include <cstdio>
#include <iomanip>
#include <sstream>
#include <stdexcept>

namespace QivoUi
{

namespace
{

template <typename Number> Number Read(const std::string& text)
{
    std::istringstream stream(text);
    Number value = 0;
    if (!(stream >> value))
    {
        throw std::runtime_error(text);
    }
    return value;
}

template <typename Number> std::string Write(Number value)
{
    std::ostringstream stream;
    stream << value;
    return stream.str();
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
    std::istringstream stream(text);
    int value = 0;
    stream >> value;
    return value;
}

long long StringUtil::StringToInt64(const std::string& text)
{
    return static_cast<long long>(Read<unsigned long long>(text));
}

float StringUtil::StringToFloat(const std::string& text)
{
    return Read<float>(text);
}

double StringUtil::StringToDouble(const std::string& text)
{
    return Read<double>(text);
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
    std::ostringstream stream;
    stream << (value <= 16 ? "0" : "") << std::hex << value;
    return stream.str();
}

std::string StringUtil::IntToString(int value)
{
    return Write(value);
}

std::string StringUtil::Int64ToString(long long value)
{
    return Write(value);
}

std::string StringUtil::FloatToString(float value)
{
    return Write(value);
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
    std::ostringstream stream;
    stream << std::fixed;
    if (precision > 0)
    {
        stream << std::setprecision(precision);
    }
    stream << value;
    return stream.str();
}

} // namespace QivoUi
