#include "common/util/StringUtil.h"

#include <climits>
#include <gtest/gtest.h>
#include <limits>

using QivoUi::StringUtil;

namespace
{

TEST(IntToHexaStringBy8BitTest, WritesZeroWithTwoDigits)
{
    EXPECT_EQ(StringUtil::IntToHexaStringBy8Bit(0), "00");
}

TEST(IntToHexaStringBy8BitTest, PutsAZeroInFrontUpToSixteen)
{
    EXPECT_EQ(StringUtil::IntToHexaStringBy8Bit(1), "01");
    EXPECT_EQ(StringUtil::IntToHexaStringBy8Bit(10), "0a");
    EXPECT_EQ(StringUtil::IntToHexaStringBy8Bit(15), "0f");
    EXPECT_EQ(StringUtil::IntToHexaStringBy8Bit(16), "010");
    EXPECT_EQ(StringUtil::IntToHexaStringBy8Bit(17), "11");
}

TEST(IntToHexaStringBy8BitTest, WritesLargeValuesWithAllTheirDigits)
{
    EXPECT_EQ(StringUtil::IntToHexaStringBy8Bit(255), "ff");
    EXPECT_EQ(StringUtil::IntToHexaStringBy8Bit(256), "100");
    EXPECT_EQ(StringUtil::IntToHexaStringBy8Bit(INT_MAX), "7fffffff");
}

TEST(IntToHexaStringBy8BitTest, WritesNegativeValuesAsZeroAndTheirEightDigits)
{
    EXPECT_EQ(StringUtil::IntToHexaStringBy8Bit(-1), "0ffffffff");
    EXPECT_EQ(StringUtil::IntToHexaStringBy8Bit(INT_MIN), "080000000");
}

TEST(IntToStringTest, WritesDecimalDigits)
{
    EXPECT_EQ(StringUtil::IntToString(0), "0");
    EXPECT_EQ(StringUtil::IntToString(-42), "-42");
    EXPECT_EQ(StringUtil::IntToString(INT_MAX), "2147483647");
    EXPECT_EQ(StringUtil::IntToString(INT_MIN), "-2147483648");
}

TEST(Int64ToStringTest, WritesDecimalDigits)
{
    EXPECT_EQ(StringUtil::Int64ToString(0), "0");
    EXPECT_EQ(StringUtil::Int64ToString(-42), "-42");
    EXPECT_EQ(StringUtil::Int64ToString(LLONG_MAX), "9223372036854775807");
    EXPECT_EQ(StringUtil::Int64ToString(LLONG_MIN), "-9223372036854775808");
}

TEST(FloatToStringTest, WritesAtMostSixSignificantDigits)
{
    EXPECT_EQ(StringUtil::FloatToString(1.5F), "1.5");
    EXPECT_EQ(StringUtil::FloatToString(0.1F), "0.1");
    EXPECT_EQ(StringUtil::FloatToString(-3.1415926F), "-3.14159");
    EXPECT_EQ(StringUtil::FloatToString(123456.0F), "123456");
}

TEST(FloatToStringTest, ChoosesTheScientificNotation)
{
    EXPECT_EQ(StringUtil::FloatToString(1234567.0F), "1.23457e+06");
    EXPECT_EQ(StringUtil::FloatToString(0.00001F), "1e-05");
    EXPECT_EQ(StringUtil::FloatToString(-1.23457e-38F), "-1.23457e-38");
    EXPECT_EQ(StringUtil::FloatToString(-0.000123457F), "-0.000123457");
}

TEST(FloatToStringTest, WritesWhatIsNoNumberAsWords)
{
    EXPECT_EQ(StringUtil::FloatToString(std::numeric_limits<float>::infinity()), "inf");
    EXPECT_EQ(StringUtil::FloatToString(-std::numeric_limits<float>::infinity()), "-inf");
    EXPECT_EQ(StringUtil::FloatToString(std::numeric_limits<float>::quiet_NaN()), "nan");
}

TEST(FloatToStringTest, WritesNoTrailingZeros)
{
    EXPECT_EQ(StringUtil::FloatToString(2.0F), "2");
    EXPECT_EQ(StringUtil::FloatToString(0.0F), "0");
    EXPECT_EQ(StringUtil::FloatToString(2.50F), "2.5");
}

TEST(RoundOffTest, CutsBehindTheGivenPlaces)
{
    EXPECT_EQ(StringUtil::RoundOff(3.14159F, 2), "3.14");
    EXPECT_EQ(StringUtil::RoundOff(3.14159F, 4), "3.1415");
    EXPECT_EQ(StringUtil::RoundOff(-2.999F, 1), "-2.9");
    EXPECT_EQ(StringUtil::RoundOff(12.75F, 1), "12.7");
}

TEST(RoundOffTest, RoundsOnlyToSixSignificantDigits)
{
    EXPECT_EQ(StringUtil::RoundOff(0.9999999F, 2), "1");
    EXPECT_EQ(StringUtil::RoundOff(3.999996F, 2), "4");
}

TEST(RoundOffTest, DropsThePointWithoutPlaces)
{
    EXPECT_EQ(StringUtil::RoundOff(2.75F, 0), "2");
    EXPECT_EQ(StringUtil::RoundOff(-0.5F, 0), "-0");
}

TEST(RoundOffTest, GivesTheTextAsItIsWithoutAPoint)
{
    EXPECT_EQ(StringUtil::RoundOff(2.0F, 2), "2");
    EXPECT_EQ(StringUtil::RoundOff(123.0F, 0), "123");
    EXPECT_EQ(StringUtil::RoundOff(0.00001F, 2), "1e-05");
}

TEST(RoundOffTest, GivesZeroForZero)
{
    EXPECT_EQ(StringUtil::RoundOff(0.0F, 3), "0");
    EXPECT_EQ(StringUtil::RoundOff(0.0F, 0), "0");
    EXPECT_EQ(StringUtil::RoundOff(-0.0F, 3), "-0");
}

TEST(RoundOffTest, GivesAllOfAShorterText)
{
    EXPECT_EQ(StringUtil::RoundOff(1.5F, 1), "1.5");
    EXPECT_EQ(StringUtil::RoundOff(1.5F, 2), "1.5");
    EXPECT_EQ(StringUtil::RoundOff(1.5F, INT_MAX), "1.5");
}

TEST(RoundOffTest, CutsTheExponentOff)
{
    EXPECT_EQ(StringUtil::RoundOff(1234567.0F, 2), "1.23");
    EXPECT_EQ(StringUtil::RoundOff(1234567.0F, 0), "1");
}

TEST(RoundOffTest, CutsThePointOrMoreForNegativePlaces)
{
    EXPECT_EQ(StringUtil::RoundOff(123.75F, -1), "123");
    EXPECT_EQ(StringUtil::RoundOff(123.75F, -2), "12");
    EXPECT_EQ(StringUtil::RoundOff(123.75F, -4), "");
}

TEST(DoubleToStringTest, WritesTheGivenPlaces)
{
    EXPECT_EQ(StringUtil::DoubleToString(3.14159, 2), "3.14");
    EXPECT_EQ(StringUtil::DoubleToString(2.5, 1), "2.5");
    EXPECT_EQ(StringUtil::DoubleToString(1e10, 1), "10000000000.0");
    EXPECT_EQ(StringUtil::DoubleToString(1.0 / 3.0, 10), "0.3333333333");
}

TEST(DoubleToStringTest, RoundsTheLastPlace)
{
    EXPECT_EQ(StringUtil::DoubleToString(2.999, 2), "3.00");
    EXPECT_EQ(StringUtil::DoubleToString(-0.26, 1), "-0.3");
}

TEST(DoubleToStringTest, WritesAllDigitsOfTheLongest)
{
    const std::string one = StringUtil::DoubleToString(-std::numeric_limits<double>::max(), 1);
    EXPECT_EQ(one.size(), 1 + 309 + 2U);
    EXPECT_EQ(one.substr(0, 10), "-179769313");
    EXPECT_EQ(one.substr(308), "68.0");
    EXPECT_EQ(StringUtil::DoubleToString(-std::numeric_limits<double>::max(), 400),
              one + std::string(399, '0'));
    EXPECT_EQ(StringUtil::DoubleToString(0.5, 400), "0.5" + std::string(399, '0'));
}

TEST(DoubleToStringTest, WritesSixPlacesWithoutAPositivePrecision)
{
    EXPECT_EQ(StringUtil::DoubleToString(2.5, 0), "2.500000");
    EXPECT_EQ(StringUtil::DoubleToString(2.5, -1), "2.500000");
    EXPECT_EQ(StringUtil::DoubleToString(0.0, 0), "0.000000");
}

TEST(DoubleToStringTest, WritesWhatIsNoNumberAsWords)
{
    EXPECT_EQ(StringUtil::DoubleToString(std::numeric_limits<double>::infinity(), 2), "inf");
    EXPECT_EQ(StringUtil::DoubleToString(-std::numeric_limits<double>::infinity(), 0), "-inf");
    EXPECT_EQ(StringUtil::DoubleToString(std::numeric_limits<double>::quiet_NaN(), 2), "nan");
}

} // namespace
