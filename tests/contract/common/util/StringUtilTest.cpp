#include "common/util/StringUtil.h"

#include "harness/Recorder.h"
#include <climits>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

using QivoUi::StringUtil;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

// What a conversion threw: the rejected text, or that it threw nothing of the right type.
template <typename Function> std::string ThrownBy(Function convert, const std::string& text)
{
    try
    {
        convert(text);
    }
    catch (const std::runtime_error& failure)
    {
        return failure.what();
    }
    return "nothing was thrown";
}

TEST(StringReplaceTest, ReplacesTheFirstOccurrenceOnly)
{
    EXPECT_EQ(StringUtil::StringReplace("a\nb\nc", "\n", "<br>"), "a<br>b\nc");
    EXPECT_EQ(StringUtil::StringReplace("xx", "x", "xx"), "xxx");
}

TEST(StringReplaceTest, SearchesFromTheVeryStart)
{
    EXPECT_EQ(StringUtil::StringReplace("\nb", "\n", "<br>"), "<br>b");
}

TEST(StringReplaceTest, ReplacesTheLastByte)
{
    EXPECT_EQ(StringUtil::StringReplace("a\n", "\n", ""), "a");
}

TEST(StringReplaceTest, ReplacesTheWholeOfALongerSearchText)
{
    EXPECT_EQ(StringUtil::StringReplace("one two two", "two", "2"), "one 2 two");
    EXPECT_EQ(StringUtil::StringReplace("größer", "ö", "oe"), "groeßer");
}

TEST(StringReplaceTest, PutsTheReplacementInFrontForAnEmptySearchText)
{
    EXPECT_EQ(StringUtil::StringReplace("abc", "", "x"), "xabc");
    EXPECT_EQ(StringUtil::StringReplace("", "", "x"), "x");
}

TEST(StringReplaceTest, ReturnsTheSourceWhenTheSearchTextDoesNotOccur)
{
    EXPECT_EQ(StringUtil::StringReplace("abc", "d", "x"), "abc");
    EXPECT_EQ(StringUtil::StringReplace("", "d", "x"), "");
}

TEST(StringReplaceTest, TakesAZeroByteAsAnyOther)
{
    const std::string source("a\0b\0c", 5);
    EXPECT_EQ(StringUtil::StringReplace(source, std::string(1, '\0'), "-"),
              std::string("a-b\0c", 5));
}

TEST(GetColorTagedStringTest, WritesTheColourAndTheSizeWithoutAFont)
{
    EXPECT_EQ(StringUtil::GetColorTagedString(255, 0, 16, 255, 30, "Hi", ""),
              "<color=#ff0010ff font_size=30>Hi</color>");
}

TEST(GetColorTagedStringTest, WritesTheFontLast)
{
    EXPECT_EQ(StringUtil::GetColorTagedString(255, 0, 16, 255, 30, "Hi", "Sans"),
              "<color=#ff0010ff font_size=30 font=Sans>Hi</color>");
}

TEST(GetColorTagedStringTest, WritesRedGreenBlueAlphaInThisOrder)
{
    EXPECT_EQ(StringUtil::GetColorTagedString(1, 2, 3, 4, 5, "", ""),
              "<color=#01020304 font_size=5></color>");
    EXPECT_EQ(StringUtil::GetColorTagedString(0xa1, 0xb2, 0xc3, 0xd4, 5, "", "F"),
              "<color=#a1b2c3d4 font_size=5 font=F></color>");
}

TEST(GetColorTagedStringTest, ClampsNothing)
{
    EXPECT_EQ(StringUtil::GetColorTagedString(256, -1, 0, 0, -7, "t", ""),
              "<color=#100ffffffff0000 font_size=-7>t</color>");
    EXPECT_EQ(StringUtil::GetColorTagedString(256, -1, 0, 0, -7, "t", "F"),
              "<color=#100ffffffff0000 font_size=-7 font=F>t</color>");
}

TEST(GetColorTagedStringTest, CutsTheOpeningTagAt255Bytes)
{
    const std::string beginning = "<color=#00000000 font_size=1 font=";
    const std::string fits(255 - beginning.size() - 1, 'f');
    EXPECT_EQ(StringUtil::GetColorTagedString(0, 0, 0, 0, 1, "text", fits),
              beginning + fits + ">text</color>");

    const std::string oneTooMany = fits + "f";
    EXPECT_EQ(StringUtil::GetColorTagedString(0, 0, 0, 0, 1, "text", oneTooMany),
              beginning + oneTooMany + "text</color>");

    const std::string farTooMany = std::string(4000, 'f');
    EXPECT_EQ(StringUtil::GetColorTagedString(0, 0, 0, 0, 1, "text", farTooMany),
              beginning + farTooMany.substr(0, 255 - beginning.size()) + "text</color>");
}

TEST(GetColorTagedStringTest, CutsBetweenTheBytesOfALetter)
{
    const std::string beginning = "<color=#00000000 font_size=1 font=";
    std::string font(255 - beginning.size() - 1, 'f');
    EXPECT_EQ(StringUtil::GetColorTagedString(0, 0, 0, 0, 1, "text", font + "\xc3\xa4"),
              beginning + font + "\xc3text</color>");
}

TEST(GetColorTagedStringTest, NeverCutsTheText)
{
    const std::string text = std::string(4000, 't') + "%s<&>";
    EXPECT_EQ(StringUtil::GetColorTagedString(0, 0, 0, 0, 1, text, "%d"),
              "<color=#00000000 font_size=1 font=%d>" + text + "</color>");
}

TEST(StringToIntTest, ReadsADecimalNumber)
{
    EXPECT_EQ(StringUtil::StringToInt("42"), 42);
    EXPECT_EQ(StringUtil::StringToInt("-42"), -42);
    EXPECT_EQ(StringUtil::StringToInt("+42"), 42);
    EXPECT_EQ(StringUtil::StringToInt("010"), 10);
}

TEST(StringToIntTest, SkipsLeadingWhiteSpace)
{
    EXPECT_EQ(StringUtil::StringToInt(" \t\n\v\f\r7"), 7);
    EXPECT_EQ(StringUtil::StringToInt(" +7"), 7);
    EXPECT_EQ(StringUtil::StringToInt(" \t\n\v\f\r"), 0);
}

TEST(StringToIntTest, SkipsNoByteThatIsNoWhiteSpace)
{
    for (int byte = 1; byte < 256; ++byte)
    {
        const bool isSkipped = byte == '+' || byte == ' ' || (byte >= '\t' && byte <= '\r');
        if (byte != '-' && !(byte >= '0' && byte <= '9'))
        {
            const std::string text = {static_cast<char>(byte), '7'};
            EXPECT_EQ(StringUtil::StringToInt(text), isSkipped ? 7 : 0) << "byte " << byte;
        }
    }
}

TEST(StringToIntTest, TakesOneSignWithoutABlankBehindIt)
{
    EXPECT_EQ(StringUtil::StringToInt("+-42"), 0);
    EXPECT_EQ(StringUtil::StringToInt("-+42"), 0);
    EXPECT_EQ(StringUtil::StringToInt("++42"), 0);
    EXPECT_EQ(StringUtil::StringToInt("--42"), 0);
    EXPECT_EQ(StringUtil::StringToInt("- 42"), 0);
    EXPECT_EQ(StringUtil::StringToInt("+"), 0);
    EXPECT_EQ(StringUtil::StringToInt("x-42"), 0);
}

TEST(StringToIntTest, ReadsTheLongestNumberAtTheStart)
{
    EXPECT_EQ(StringUtil::StringToInt("12abc"), 12);
    EXPECT_EQ(StringUtil::StringToInt("3.9"), 3);
    EXPECT_EQ(StringUtil::StringToInt("0x10"), 0);
}

TEST(StringToIntTest, GivesZeroForWhatIsNoNumber)
{
    EXPECT_EQ(StringUtil::StringToInt("x"), 0);
    EXPECT_EQ(StringUtil::StringToInt("abc"), 0);
    EXPECT_EQ(StringUtil::StringToInt(""), 0);
    EXPECT_EQ(StringUtil::StringToInt("-"), 0);
}

TEST(StringToIntTest, EndsAtANullByte)
{
    EXPECT_EQ(StringUtil::StringToInt(std::string("1\0002", 3)), 1);
    EXPECT_EQ(StringUtil::StringToInt(std::string("\0002", 2)), 0);
}

TEST(StringToIntTest, NeverFailsOnOverflow)
{
    EXPECT_EQ(StringUtil::StringToInt("2147483647"), INT_MAX);
    EXPECT_EQ(StringUtil::StringToInt("-2147483648"), INT_MIN);
    EXPECT_EQ(StringUtil::StringToInt("2147483648"), INT_MAX);
    EXPECT_EQ(StringUtil::StringToInt("+2147483648"), INT_MAX);
    EXPECT_EQ(StringUtil::StringToInt("-2147483649"), INT_MIN);
}

TEST(StringToInt64Test, ReadsUnsignedAndReturnsTheBitsSigned)
{
    EXPECT_EQ(StringUtil::StringToInt64("5"), 5);
    EXPECT_EQ(StringUtil::StringToInt64("+5"), 5);
    EXPECT_EQ(StringUtil::StringToInt64("-5"), -5);
    EXPECT_EQ(StringUtil::StringToInt64("-18446744073709551615"), 1);
    EXPECT_EQ(StringUtil::StringToInt64("9223372036854775807"), LLONG_MAX);
    EXPECT_EQ(StringUtil::StringToInt64("9223372036854775808"), LLONG_MIN);
    EXPECT_EQ(StringUtil::StringToInt64("18446744073709551615"), -1);
}

TEST(StringToInt64Test, SkipsWhiteSpaceAndIgnoresWhatFollows)
{
    EXPECT_EQ(StringUtil::StringToInt64(" \n12abc"), 12);
    EXPECT_EQ(StringUtil::StringToInt64("7 8"), 7);
    EXPECT_EQ(StringUtil::StringToInt64("010"), 10);
}

TEST(StringToInt64Test, ThrowsTheRejectedText)
{
    EXPECT_EQ(ThrownBy(StringUtil::StringToInt64, "x"), "x");
    EXPECT_EQ(ThrownBy(StringUtil::StringToInt64, ""), "");
    EXPECT_EQ(ThrownBy(StringUtil::StringToInt64, " a1 "), " a1 ");
    EXPECT_EQ(ThrownBy(StringUtil::StringToInt64, "-"), "-");
    EXPECT_EQ(ThrownBy(StringUtil::StringToInt64, "+"), "+");
    EXPECT_EQ(ThrownBy(StringUtil::StringToInt64, " "), " ");
    EXPECT_EQ(ThrownBy(StringUtil::StringToInt64, "+-5"), "+-5");
    EXPECT_EQ(ThrownBy(StringUtil::StringToInt64, "--5"), "--5");
    EXPECT_EQ(ThrownBy(StringUtil::StringToInt64, "18446744073709551616"), "18446744073709551616");
}

TEST(StringToFloatTest, ReadsANumberAtTheStart)
{
    EXPECT_EQ(StringUtil::StringToFloat("3.5kg"), 3.5F);
    EXPECT_EQ(StringUtil::StringToFloat(" -0.25"), -0.25F);
    EXPECT_EQ(StringUtil::StringToFloat("1e3"), 1000.0F);
    EXPECT_EQ(StringUtil::StringToFloat("7"), 7.0F);
}

TEST(StringToFloatTest, ReadsInSinglePrecision)
{
    EXPECT_EQ(StringUtil::StringToFloat("0.1"), 0.1F);
    // Just above the middle of two floats; by way of a double it would become the lower one.
    EXPECT_EQ(StringUtil::StringToFloat("1.00000005960464477540"), std::nextafter(1.0F, 2.0F));
    EXPECT_EQ(ThrownBy(StringUtil::StringToFloat, "1e39"), "1e39");
}

TEST(StringToFloatTest, TakesWhatIsTooSmallForZero)
{
    EXPECT_EQ(StringUtil::StringToFloat("1e-60"), 0.0F);
    EXPECT_EQ(StringUtil::StringToFloat("1e-45"), std::numeric_limits<float>::denorm_min());
}

TEST(StringToFloatTest, ThrowsTheRejectedText)
{
    EXPECT_EQ(ThrownBy(StringUtil::StringToFloat, "kg"), "kg");
    EXPECT_EQ(ThrownBy(StringUtil::StringToFloat, ""), "");
    EXPECT_EQ(ThrownBy(StringUtil::StringToFloat, " ,5"), " ,5");
    EXPECT_EQ(ThrownBy(StringUtil::StringToFloat, "1e"), "1e");
    EXPECT_EQ(ThrownBy(StringUtil::StringToFloat, "inf"), "inf");
}

TEST(StringToDoubleTest, ReadsANumberAtTheStart)
{
    EXPECT_EQ(StringUtil::StringToDouble("3.5kg"), 3.5);
    EXPECT_EQ(StringUtil::StringToDouble("\t-0.1"), -0.1);
    EXPECT_EQ(StringUtil::StringToDouble("1e39"), 1e39);
    EXPECT_EQ(StringUtil::StringToDouble("3.14159265358979"), 3.14159265358979);
    EXPECT_EQ(StringUtil::StringToDouble("+2E+3"), 2000);
    EXPECT_EQ(StringUtil::StringToDouble(".5"), 0.5);
    EXPECT_EQ(StringUtil::StringToDouble("5."), 5);
    EXPECT_EQ(StringUtil::StringToDouble("0123456789"), 123456789);
    EXPECT_EQ(StringUtil::StringToDouble("0x10"), 0);
    EXPECT_EQ(StringUtil::StringToDouble("1.5.5"), 1.5);
    EXPECT_EQ(StringUtil::StringToDouble("1-5"), 1);
}

TEST(StringToDoubleTest, TakesOneExponentOfDigits)
{
    EXPECT_EQ(StringUtil::StringToDouble("1e-5"), 1e-5);
    EXPECT_EQ(StringUtil::StringToDouble("1e5e5"), 1e5);
    EXPECT_EQ(StringUtil::StringToDouble("1E5e"), 1e5);
    EXPECT_EQ(StringUtil::StringToDouble("1 e"), 1);
    EXPECT_EQ(ThrownBy(StringUtil::StringToDouble, "1e"), "1e");
    EXPECT_EQ(ThrownBy(StringUtil::StringToDouble, "1E"), "1E");
    EXPECT_EQ(ThrownBy(StringUtil::StringToDouble, "1e+"), "1e+");
    EXPECT_EQ(ThrownBy(StringUtil::StringToDouble, "e5"), "e5");
}

TEST(StringToDoubleTest, TakesWhatIsTooSmallForZero)
{
    EXPECT_EQ(StringUtil::StringToDouble("1e-400"), 0.0);
    EXPECT_EQ(StringUtil::StringToDouble("-1e-400kg"), 0.0);
}

TEST(StringToDoubleTest, TakesNoWords)
{
    EXPECT_EQ(ThrownBy(StringUtil::StringToDouble, "inf"), "inf");
    EXPECT_EQ(ThrownBy(StringUtil::StringToDouble, "-infinity"), "-infinity");
    EXPECT_EQ(ThrownBy(StringUtil::StringToDouble, "nan"), "nan");
    EXPECT_EQ(ThrownBy(StringUtil::StringToDouble, "+nan(1)"), "+nan(1)");
}

TEST(StringToDoubleTest, ThrowsTheRejectedText)
{
    EXPECT_EQ(ThrownBy(StringUtil::StringToDouble, "kg"), "kg");
    EXPECT_EQ(ThrownBy(StringUtil::StringToDouble, ""), "");
    EXPECT_EQ(ThrownBy(StringUtil::StringToDouble, "  x"), "  x");
    EXPECT_EQ(ThrownBy(StringUtil::StringToDouble, " +"), " +");
    EXPECT_EQ(ThrownBy(StringUtil::StringToDouble, "1e999"), "1e999");
}

TEST(TokenizeTest, GivesNoEmptyTokens)
{
    EXPECT_THAT(StringUtil::Tokenize(",a,,b,", ","), ElementsAre("a", "b"));
    EXPECT_THAT(StringUtil::Tokenize("a,b", ","), ElementsAre("a", "b"));
}

TEST(TokenizeTest, TakesEveryByteOfTheDelimitersAsADelimiter)
{
    EXPECT_THAT(StringUtil::Tokenize("one;two, three,;four", ",; "),
                ElementsAre("one", "two", "three", "four"));
}

// The two letters share their first byte.
TEST(TokenizeTest, TakesEachByteOfALetterAsADelimiter)
{
    EXPECT_THAT(StringUtil::Tokenize("aäzöy", "ä"), ElementsAre("a", "z", "\xb6y"));
}

TEST(TokenizeTest, TakesTheLastTokenToTheEnd)
{
    EXPECT_THAT(StringUtil::Tokenize("a/bc", "/"), ElementsAre("a", "bc"));
    EXPECT_THAT(StringUtil::Tokenize("abc", "/"), ElementsAre("abc"));
}

TEST(TokenizeTest, GivesNothingWithoutAToken)
{
    EXPECT_THAT(StringUtil::Tokenize("", ","), IsEmpty());
    EXPECT_THAT(StringUtil::Tokenize(",,;", ";,"), IsEmpty());
    EXPECT_THAT(StringUtil::Tokenize("", ""), IsEmpty());
}

TEST(TokenizeTest, GivesTheWholeTextWithoutDelimiters)
{
    EXPECT_THAT(StringUtil::Tokenize(",a b,", ""), ElementsAre(",a b,"));
}

TEST(StringUtilTest, LogsNothing)
{
    Recorder::Reset();

    StringUtil::StringReplace("a", "a", "b");
    StringUtil::GetColorTagedString(0, 0, 0, 0, 1, "a", "");
    StringUtil::StringToInt("1");
    StringUtil::StringToInt64("1");
    StringUtil::StringToFloat("1");
    StringUtil::StringToDouble("1");
    ThrownBy(StringUtil::StringToInt64, "x");
    ThrownBy(StringUtil::StringToFloat, "x");
    ThrownBy(StringUtil::StringToDouble, "x");
    StringUtil::Tokenize("a", ",");
    StringUtil::IntToHexaStringBy8Bit(1);
    StringUtil::IntToString(1);
    StringUtil::Int64ToString(1);
    StringUtil::FloatToString(1);
    StringUtil::RoundOff(1, 1);
    StringUtil::DoubleToString(1, 1);

    EXPECT_EQ(Recorder::Take(), Recorder::Lines());
}

} // namespace
