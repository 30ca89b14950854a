#ifndef QIVO_UI_COMMON_UTIL_STRINGUTIL_H
#define QIVO_UI_COMMON_UTIL_STRINGUTIL_H

#include <string>
#include <vector>

namespace QivoUi
{

/**
 * String helpers without state. Strings are bytes: UTF-8 passes through unchanged, and every
 * position, length and delimiter counts bytes. Nothing here logs.
 *
 * Numbers are read and written by the C++ library's streams, so the global std::locale decides how
 * they look. The examples are those of the classic locale, which a program begins with.
 */
class StringUtil
{
public:
    StringUtil() = default;
    virtual ~StringUtil() = default;

    /** Deliberately replaces only the first occurrence; an empty `from` puts `to` in front. */
    static std::string StringReplace(std::string source, std::string from, std::string to);

    /**
     * Wraps a text in a colour tag (the name is spelled so): "<color=#rrggbbaa font_size=N
     * font=NAME>text</color>".
     *
     * @param red, green, blue, alpha written as at least two hexadecimal digits, not clamped
     * @param font left out of the tag when empty; note that it comes after the text
     *
     * The opening tag is cut at 255 bytes, so a very long font name costs it its ">".
     */
    static std::string GetColorTagedString(int red, int green, int blue, int alpha, int fontSize,
                                           const std::string& text, std::string font);

    /**
     * The number at the start, as all of these read it: behind white space and a plus sign, in
     * decimal, whatever follows.
     *
     * @return 0 when there is none, the nearest int to one out of range; never fails
     */
    static int StringToInt(const std::string& text);

    /**
     * The number at the start, read as unsigned 64 bits and returned as signed ones: 2^64-1
     * reads as -1. Deliberate: every 64-bit pattern can be given.
     *
     * @throws std::runtime_error with the text itself when it does not begin with a number, or
     *         with one of more than 64 bits
     */
    static long long StringToInt64(const std::string& text);

    /**
     * The number at the start; one too close to 0 is no failure.
     *
     * @throws std::runtime_error with the text itself when it does not begin with a number, or
     *         with one too large, "inf", "nan" or an exponent without digits
     */
    static float StringToFloat(const std::string& text);

    /** As StringToFloat(), with a double's range. */
    static double StringToDouble(const std::string& text);

    /** The parts between any bytes of `delimiters`, in order; none of them is empty. */
    static std::vector<std::string> Tokenize(const std::string& text,
                                             const std::string& delimiters);

    /**
     * Lowercase hexadecimal digits, at least two: "00", "0a", "ff", "100".
     *
     * Deliberate: 16 reads "010", and a negative value "0" and its eight digits.
     */
    static std::string IntToHexaStringBy8Bit(int value);

    /** Decimal digits. */
    static std::string IntToString(int value);

    /** Decimal digits. */
    static std::string Int64ToString(long long value);

    /** At most six significant digits, fixed or scientific: "1.5", "1.23457e+06". */
    static std::string FloatToString(float value);

    /**
     * FloatToString() cut, not rounded, after `digits` places behind the first ".".
     *
     * Deliberate: an exponent is cut off too ("1.23457e+06" with 2 digits gives "1.23").
     */
    static std::string RoundOff(float value, int digits);

    /** Fixed notation; deliberately six places unless `precision` is above 0. */
    static std::string DoubleToString(double value, int precision);
};

} // namespace QivoUi

#endif
