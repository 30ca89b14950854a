#include "common/Options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>
#include <vector>

namespace
{
Options Parse(std::vector<std::string> arguments)
{
    static std::string sProgram = "program";
    std::vector<char*> pointers = {sProgram.data()};
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    return Options(static_cast<int>(pointers.size()), pointers.data(), {"screen", "size", "zoom"});
}

template <typename Use> std::string Refusal(Use use)
{
    try
    {
        use();
    }
    catch (const std::invalid_argument& error)
    {
        return error.what();
    }
    return "accepted";
}

double Zoom(const char* text)
{
    return Parse({"--zoom", text}).GetZoom();
}
} // namespace

TEST(Options, AreReadByName)
{
    const Options options = Parse({"--size", "390", "--screen", ":7"});
    EXPECT_EQ(options.Get("screen"), ":7");
    EXPECT_EQ(options.GetScreenSize(), 390);
}

TEST(Options, AZoomIsAPlainNumberAnd1WhenNoneIsGiven)
{
    EXPECT_EQ(Parse({}).GetZoom(), 1);
    EXPECT_EQ(Zoom("0.5"), 0.5);
    EXPECT_EQ(Zoom("4"), 4);
}

TEST(Options, AWrongZoomIsNamedWithWhatIsAccepted)
{
    for (const char* text : {"", "0.49", "4.01", "two", "2x", "-1", "nan", "inf"})
    {
        EXPECT_EQ(Refusal([&] { Zoom(text); }),
                  std::string("--zoom is \"") + text + "\" (0.5 to 4)");
    }
}

TEST(Options, AWrongSizeIsNamedWithWhatIsAccepted)
{
    EXPECT_EQ(Refusal(
                  [] {
                      Parse({"--size", "361"}).GetScreenSize();
                  }),
              "--size is \"361\" (360, 390, 454)");
}

TEST(Options, WhatIsMissingUnknownOrWithoutValueIsNamed)
{
    EXPECT_EQ(Refusal([] { Parse({}).Get("screen"); }), "--screen is missing");
    EXPECT_EQ(Refusal([] { Parse({"--bogus", "1"}); }), "unknown argument \"--bogus\"");
    EXPECT_EQ(Refusal([] { Parse({"size"}); }), "unknown argument \"size\"");
    EXPECT_EQ(Refusal([] { Parse({"--size"}); }), "--size needs a value");
}
