// Each conversion gives for every text and number what the C++ library's streams give; random ones
// find the corners that nobody thinks of.

#include "common/util/StringUtil.h"

#include <cstring>
#include <gtest/gtest.h>
#include <iomanip>
#include <random>
#include <sstream>
#include <stdexcept>

using QivoUi::StringUtil;

namespace
{

constexpr int kTimes = 5000;

std::mt19937_64 sRandom;

std::uint64_t Below(std::uint64_t limit)
{
    return sRandom() % limit;
}

template <typename T> T AnyBits()
{
    const std::uint64_t bits = sRandom();
    T value;
    std::memcpy(&value, &bits, sizeof(value));
    return value;
}

// A number of few digits half of the time, else any.
template <typename T> T AnyNumber()
{
    return Below(2) == 0 ? static_cast<T>(static_cast<int>(Below(2000001)) - 1000000) / 1000
                         : AnyBits<T>();
}

// What might be a number, and mostly just is not one.
std::string AnyText()
{
    static const std::string kKinds[] = {"0123456789", "01239 \t+-.eE",
                                         "0123456789+-.eExXinfaNP \n\v\f\r,'\x80", "9"};
    const std::string& kind = kKinds[Below(std::size(kKinds))];
    std::string text;
    for (std::uint64_t length = Below(Below(8) == 0 ? 45 : 10); length > 0; --length)
    {
        text += kind[Below(kind.size())];
    }
    return Below(4) == 0 ? text + "e" + std::to_string(static_cast<int>(Below(700)) - 350) : text;
}

// What a conversion gives to the last bit, or the text that it throws.
template <typename Function> std::string Outcome(Function convert, const std::string& text)
{
    try
    {
        const auto value = convert(text);
        std::ostringstream bits;
        bits << std::hexfloat << value;
        return bits.str();
    }
    catch (const std::runtime_error& failure)
    {
        return "throws '" + std::string(failure.what()) + "'";
    }
}

template <typename Result, typename Read> Result FromStream(const std::string& text)
{
    std::istringstream stream(text);
    Read value = 0;
    if (!(stream >> value))
    {
        throw std::runtime_error(text);
    }
    return static_cast<Result>(value);
}

template <typename T> std::string FromStream(T value)
{
    std::ostringstream stream;
    stream << value;
    return stream.str();
}

TEST(StringUtilStreamsTest, ReadsAsAStreamDoes)
{
    sRandom.seed(1);
    for (int i = 0; i < kTimes; ++i)
    {
        const std::string text = AnyText();
        int number = 0;
        std::istringstream(text) >> number;
        ASSERT_EQ(StringUtil::StringToInt(text), number) << "'" << text << "'";
        ASSERT_EQ(Outcome(StringUtil::StringToInt64, text),
                  Outcome(FromStream<long long, unsigned long long>, text));
        ASSERT_EQ(Outcome(StringUtil::StringToFloat, text),
                  Outcome(FromStream<float, float>, text));
        ASSERT_EQ(Outcome(StringUtil::StringToDouble, text),
                  Outcome(FromStream<double, double>, text));
    }
}

TEST(StringUtilStreamsTest, WritesAsAStreamDoes)
{
    sRandom.seed(2);
    for (int i = 0; i < kTimes; ++i)
    {
        const int number = AnyBits<int>() >> Below(32);
        const long long wide = AnyBits<long long>() >> Below(64);
        const auto real = AnyNumber<float>();
        ASSERT_EQ(StringUtil::IntToString(number), FromStream(number));
        ASSERT_EQ(StringUtil::Int64ToString(wide), FromStream(wide));
        ASSERT_EQ(StringUtil::FloatToString(real), FromStream(static_cast<double>(real)));
    }
}

TEST(StringUtilStreamsTest, WritesHexadecimalAsAStreamDoes)
{
    sRandom.seed(3);
    for (int i = 0; i < kTimes; ++i)
    {
        const int number = AnyBits<int>() >> Below(32);
        std::ostringstream stream;
        stream << (number <= 16 ? "0" : "") << std::hex << number;
        ASSERT_EQ(StringUtil::IntToHexaStringBy8Bit(number), stream.str()) << number;
    }
}

TEST(StringUtilStreamsTest, WritesFixedPlacesAsAStreamDoes)
{
    sRandom.seed(4);
    for (int i = 0; i < kTimes; ++i)
    {
        const auto number = AnyNumber<double>();
        const int precision = static_cast<int>(Below(24)) - 4;
        std::ostringstream stream;
        stream << std::fixed << std::setprecision(precision > 0 ? precision : 6) << number;
        ASSERT_EQ(StringUtil::DoubleToString(number, precision), stream.str()) << precision;
    }
}

TEST(StringUtilStreamsTest, CutsWhatAStreamWrites)
{
    sRandom.seed(5);
    for (int i = 0; i < kTimes; ++i)
    {
        const auto number = AnyNumber<float>();
        const auto digits = Below(8);
        const std::string text = FromStream(static_cast<double>(number));
        const std::size_t point = text.find('.');
        const std::string cut = point == std::string::npos ? text
                                : digits == 0              ? text.substr(0, point)
                                                           : text.substr(0, point + digits + 1);
        ASSERT_EQ(StringUtil::RoundOff(number, static_cast<int>(digits)), cut) << digits;
    }
}

} // namespace
