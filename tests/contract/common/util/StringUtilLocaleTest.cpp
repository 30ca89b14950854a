#include "common/util/StringUtil.h"

#include <gtest/gtest.h>
#include <locale>

using QivoUi::StringUtil;

namespace
{

// Numbers as in German: "1.234.567,5".
class GroupedNumbers : public std::numpunct<char>
{
protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

class StringUtilLocaleTest : public testing::Test
{
protected:
    ~StringUtilLocaleTest() override { std::locale::global(mFormer); }

private:
    const std::locale mFormer =
        std::locale::global(std::locale(std::locale::classic(), new GroupedNumbers));
};

TEST_F(StringUtilLocaleTest, ReadsNumbersAsTheGlobalLocaleWritesThem)
{
    EXPECT_EQ(StringUtil::StringToInt("1.234.567"), 1234567);
    EXPECT_EQ(StringUtil::StringToInt64("-1.234.567"), -1234567);
    EXPECT_EQ(StringUtil::StringToFloat("2,5"), 2.5F);
    EXPECT_EQ(StringUtil::StringToDouble("1.234,5"), 1234.5);
}

TEST_F(StringUtilLocaleTest, WritesNumbersAsTheGlobalLocaleDoes)
{
    EXPECT_EQ(StringUtil::IntToString(1234567), "1.234.567");
    EXPECT_EQ(StringUtil::Int64ToString(-1234567), "-1.234.567");
    EXPECT_EQ(StringUtil::FloatToString(2.5F), "2,5");
    EXPECT_EQ(StringUtil::DoubleToString(1234.5, 1), "1.234,5");
    EXPECT_EQ(StringUtil::IntToHexaStringBy8Bit(0xabcd), "a.bcd");
}

// The point is a grouping mark here, and cut at all the same.
TEST_F(StringUtilLocaleTest, CutsAtTheFirstPointWhateverItMeans)
{
    EXPECT_EQ(StringUtil::RoundOff(2.75F, 1), "2,75");
    EXPECT_EQ(StringUtil::RoundOff(123456.0F, 1), "123.4");
}

} // namespace
