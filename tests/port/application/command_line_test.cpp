#include "application/CommandLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace WatchPort;

namespace
{
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;

// The message of a line that must be wrong.
std::string ErrorOf(const std::vector<std::string>& arguments)
{
    const std::string error = ParseCommandLine(arguments).error;
    EXPECT_NE(error, "");
    EXPECT_THAT(error, Not(HasSubstr("\n")));
    return error;
}
} // namespace

TEST(CommandLine, WithoutArgumentsIsTheDefaultRequest)
{
    const CommandLine line = ParseCommandLine({});
    EXPECT_EQ(line.error, "");
    EXPECT_EQ(line.request.operation, "default");
    EXPECT_THAT(line.request.extraData, IsEmpty());
    EXPECT_FALSE(line.isHelpWanted);
    EXPECT_FALSE(line.isService);
}

TEST(CommandLine, TakesTheOperationInBothForms)
{
    EXPECT_EQ(ParseCommandLine({"--operation", "open"}).request.operation, "open");
    EXPECT_EQ(ParseCommandLine({"--operation=open"}).request.operation, "open");
    EXPECT_EQ(ParseCommandLine({"--operation=--help"}).request.operation, "--help");
    EXPECT_EQ(ParseCommandLine({"--operation=a=b"}).request.operation, "a=b");
}

TEST(CommandLine, TakesTheLastOperation)
{
    EXPECT_EQ(ParseCommandLine({"--operation", "one", "--operation=two"}).request.operation, "two");
}

TEST(CommandLine, TakesExtraDataInBothForms)
{
    const CommandLine line = ParseCommandLine(
        {"--extra", "a=1", "--extra=b=2", "--extra", "c=", "--extra", "d=x=y", "--extra", "a=3"});
    EXPECT_EQ(line.error, "");
    EXPECT_THAT(line.request.extraData,
                ElementsAre(Pair("a", "3"), Pair("b", "2"), Pair("c", ""), Pair("d", "x=y")));
}

TEST(CommandLine, TakesTextInAnyScript)
{
    const CommandLine line = ParseCommandLine({"--operation", "뒤로", "--extra", "ä=\n"});
    EXPECT_EQ(line.request.operation, "뒤로");
    EXPECT_THAT(line.request.extraData, ElementsAre(Pair("ä", "\n")));
}

TEST(CommandLine, AsksForHelp)
{
    const CommandLine line = ParseCommandLine({"--help"});
    EXPECT_EQ(line.error, "");
    EXPECT_TRUE(line.isHelpWanted);
}

TEST(CommandLine, IsOfAService)
{
    const CommandLine line = ParseCommandLine({"--service"});
    EXPECT_EQ(line.error, "");
    EXPECT_TRUE(line.isService);
}

TEST(CommandLine, RejectsARequestOfAService)
{
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--service", "--operation", "open"},
          {"--extra=a=b", "--service"}})
        EXPECT_THAT(ErrorOf(arguments), HasSubstr("--service waits for requests: it takes no "
                                                  "--operation or --extra"));
}

TEST(CommandLine, RejectsAnUnknownOption)
{
    for (const char* option :
         {"--version", "-h", "-", "--", "--operations", "--help=now", "--service=yes"})
        EXPECT_THAT(ErrorOf({option}),
                    AllOf(HasSubstr("unknown option \"" + std::string(option) + "\""),
                          HasSubstr("accepted are --operation OP, --extra KEY=VALUE, "
                                    "--service and --help")));
}

TEST(CommandLine, RejectsAStrayArgument)
{
    EXPECT_THAT(ErrorOf({"file"}), HasSubstr("stray argument \"file\""));
    EXPECT_THAT(ErrorOf({""}), HasSubstr("stray argument \"\""));
    EXPECT_THAT(ErrorOf({"--operation", "open", "file"}), HasSubstr("stray argument \"file\""));
}

TEST(CommandLine, RejectsAMissingValue)
{
    EXPECT_THAT(ErrorOf({"--operation"}), HasSubstr("--operation has no value"));
    EXPECT_THAT(ErrorOf({"--extra"}), HasSubstr("--extra has no value"));
    EXPECT_THAT(ErrorOf({"--operation", "--extra", "a=b"}), HasSubstr("--operation has no value"));
}

TEST(CommandLine, RejectsAnEmptyOperation)
{
    EXPECT_THAT(ErrorOf({"--operation", ""}), HasSubstr("--operation \"\""));
    EXPECT_THAT(ErrorOf({"--operation="}), HasSubstr("--operation \"\""));
}

TEST(CommandLine, RejectsMalformedExtraData)
{
    for (const char* extra : {"", "key", "=value", "="})
    {
        const std::string expected = "--extra \"" + std::string(extra) + "\": KEY=VALUE";
        EXPECT_THAT(ErrorOf({"--extra", extra}), HasSubstr(expected));
        EXPECT_THAT(ErrorOf({"--extra=" + std::string(extra)}), HasSubstr(expected));
    }
}

TEST(CommandLine, RejectsWhatIsNotUtf8AndShowsItSafely)
{
    EXPECT_THAT(ErrorOf({"--operation", "\xff"}), HasSubstr("\"\\xff\""));
    EXPECT_THAT(ErrorOf({"--extra", "k\xff=v"}), HasSubstr("\"k\\xff=v\""));
    EXPECT_THAT(ErrorOf({"--extra", "k=\xc0\xaf"}), HasSubstr("\"k=\\xc0\\xaf\""));
    EXPECT_THAT(ErrorOf({"a\n\033[31mb"}), HasSubstr("\"a\\x0a\\x1b[31mb\""));
}

TEST(CommandLine, ReportsTheFirstMistake)
{
    EXPECT_THAT(ErrorOf({"--extra", "=", "--no"}), HasSubstr("--extra \"=\""));
}

TEST(CommandLine, UsageNamesTheProgramAndEveryOption)
{
    const std::string usage = CommandLineUsage("clock");
    for (const char* part :
         {"Usage: clock ", "--operation OP", "--extra KEY=VALUE", "--service", "--help"})
        EXPECT_THAT(usage, HasSubstr(part));
}
