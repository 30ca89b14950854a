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
    return Options(static_cast<int>(pointers.size()), pointers.data(), {"screen", "size", "side"});
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

int Side(const char* text)
{
    return Parse({"--side", text}).GetSide(680);
}
} // namespace

TEST(Options, AreReadByName)
{
    const Options options = Parse({"--size", "390", "--screen", ":7"});
    EXPECT_EQ(options.Get("screen"), ":7");
    EXPECT_EQ(options.GetScreenSize(), 390);
}

TEST(Options, ASideIsAWholeNumberAndTheUsualOneWhenNoneIsGiven)
{
    EXPECT_EQ(Parse({}).GetSide(680), 680);
    EXPECT_EQ(Side("1"), 1);
    EXPECT_EQ(Side("32767"), 32767);
}

TEST(Options, AWrongSideIsNamedWithWhatIsAccepted)
{
    for (const char* text : {"", "0", "32768", "99999999999", "two", "2x", "-1", "6.5", " 6"})
    {
        EXPECT_EQ(Refusal([&] { Side(text); }),
                  std::string("--side is \"") + text + "\" (1 to 32767)");
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
