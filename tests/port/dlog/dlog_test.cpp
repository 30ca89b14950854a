#include "port/dlog/LogChild.h"
#include <dlog.h>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace
{
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;

constexpr char kTime[] = "[0-9][0-9]:[0-9][0-9]:[0-9][0-9]\\.[0-9][0-9][0-9] ";

// The line without its time.
std::string Written(const char* text)
{
    return RunChild([=] { return Print(text); }).text.substr(13);
}

// What a terminal gets, without the time and the carriage return that it adds itself.
std::string WrittenToTerminal(int master, const char* text)
{
    const int slave = open(ptsname(master), O_RDWR | O_NOCTTY | O_CLOEXEC);
    const int result = Finish(Start(slave, nullptr, [=] { return Print(text); }));
    EXPECT_GT(result, 0);
    char line[512];
    const ssize_t length = read(master, line, sizeof line);
    close(slave);
    close(master);
    EXPECT_GT(length, 15);
    return std::string(line, static_cast<size_t>(length)).substr(13);
}
} // namespace

TEST(DlogLine, HasTimePriorityTagAndText)
{
    const Outcome outcome = RunChild(
        [] { return __dlog_print(LOG_ID_MAIN, DLOG_ERROR, "TAG", "%s is %d", "seven", 7); });
    EXPECT_THAT(outcome.text, MatchesRegex(std::string(kTime) + "E TAG: seven is 7\n"));
}

TEST(DlogLine, NamesEachPriorityByItsLetter)
{
    for (int priority = DLOG_DEBUG; priority <= DLOG_ERROR; ++priority)
    {
        const Outcome outcome =
            RunChild([=] { return __dlog_print(LOG_ID_MAIN, priority, "TAG", "text"); });
        const std::string letter(1, "DIWE"[priority - DLOG_DEBUG]);
        EXPECT_EQ(outcome.text.substr(13), letter + " TAG: text\n");
    }
}

TEST(DlogLine, ReturnsTheNumberOfBytesWritten)
{
    const Outcome outcome = RunChild([] { return Print("text"); });
    EXPECT_EQ(outcome.result, static_cast<int>(outcome.text.size()));
}

TEST(DlogLine, ShowsADashWithoutATag)
{
    for (const char* tag : {"", static_cast<const char*>(nullptr)})
        EXPECT_THAT(
            RunChild([=] { return __dlog_print(LOG_ID_MAIN, DLOG_INFO, tag, "text"); }).text,
            EndsWith("I -: text\n"));
}

TEST(DlogLine, HoldsAMessageOfAnyLength)
{
    for (const size_t length : {511, 512, 513, 4096, 1000000})
    {
        const std::string message(length, 'm');
        EXPECT_EQ(Written(message.c_str()), "I TAG: " + message + "\n");
    }
}

TEST(DlogLine, DoesNotMixWithTheLinesOfOtherProcesses)
{
    const std::string message(1500, 'm');
    const auto writeMany = [&]
    {
        for (int i = 0; i < 200; ++i)
            Print(message.c_str());
        return 0;
    };
    const Outcome outcome = RunChild(
        [&]
        {
            std::vector<pid_t> children;
            for (int i = 0; i < 3; ++i)
                children.push_back(Start(dup(STDERR_FILENO), nullptr, writeMany));
            writeMany();
            for (const pid_t child : children)
                Finish(child);
            return 0;
        });
    const auto lines = Lines(outcome.text);
    EXPECT_EQ(lines.size(), 800u);
    for (const std::string& line : lines)
        ASSERT_EQ(line.substr(13), "I TAG: " + message);
}

TEST(DlogLine, LeavesErrnoAsItWas)
{
    EXPECT_EQ(RunChild(
                  []
                  {
                      errno = ERANGE;
                      Print("text");
                      return errno;
                  })
                  .result,
              ERANGE);
}

TEST(DlogArguments, RejectAMissingFormat)
{
    const char* format = nullptr;
    const Outcome outcome =
        RunChild([=] { return __dlog_print(LOG_ID_MAIN, DLOG_INFO, "T", format, "text"); });
    EXPECT_EQ(outcome.result, DLOG_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(outcome.text, "");
}

TEST(DlogArguments, RejectAnUnknownPriorityAndAnUnknownBuffer)
{
    for (const int priority : {-1, 0, 2, 7, 100})
        EXPECT_EQ(RunChild([=] { return __dlog_print(LOG_ID_MAIN, priority, "T", "text"); }).result,
                  DLOG_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RunChild([] { return __dlog_print(log_id_t(9), DLOG_INFO, "T", "text"); }).result,
              DLOG_ERROR_INVALID_PARAMETER);
}

TEST(DlogColours, AreLeftOutWhereNobodySeesThem)
{
    EXPECT_EQ(Written("\033[1;35m ###\033[0;m"), "I TAG:  ###\n");
    EXPECT_EQ(Written("a\033[0;40;31mb\033[mc"), "I TAG: abc\n");
}

class DlogTerminal : public testing::Test
{
protected:
    void SetUp() override
    {
        mMaster = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
        grantpt(mMaster);
        unlockpt(mMaster);
        if (ptsname(mMaster) == nullptr)
            GTEST_SKIP() << "no pseudo-terminals here (is /dev/pts mounted?)";
    }

    int mMaster = -1;
};

TEST_F(DlogTerminal, GetsColours)
{
    EXPECT_EQ(WrittenToTerminal(mMaster, "\033[1;35m ###\033[0;m"),
              "I TAG: \033[1;35m ###\033[0;m\r\n");
}

TEST_F(DlogTerminal, GetsColoursEndedWhereTheTextForgotIt)
{
    EXPECT_EQ(WrittenToTerminal(mMaster, "\033[1;35mtext"), "I TAG: \033[1;35mtext\033[0;m\r\n");
}

TEST_F(DlogTerminal, GetsNoOtherEscapes)
{
    EXPECT_EQ(WrittenToTerminal(mMaster, "\033]0;title\a \033[2J \033[1;"),
              "I TAG: \\x1b]0;title\\x07 \\x1b[2J \\x1b[1;\r\n");
}

TEST(DlogContent, CannotForgeALine)
{
    EXPECT_EQ(Written("a\n12:00:00.000 E TAG: forged"),
              "I TAG: a\\x0a12:00:00.000 E TAG: forged\n");
    EXPECT_EQ(Written("a\rb\tc\vd\fe\x7f"), "I TAG: a\\x0db\\x09c\\x0bd\\x0ce\\x7f\n");
    EXPECT_EQ(Written("\u0085 \u009b31m \u2028 \u2029"),
              "I TAG: \\xc2\\x85 \\xc2\\x9b31m \\xe2\\x80\\xa8 \\xe2\\x80\\xa9\n");
}

TEST(DlogContent, CannotForgeALineThroughTheTag)
{
    const Outcome outcome =
        RunChild([] { return __dlog_print(LOG_ID_MAIN, DLOG_INFO, "T\n\033[31mX", "text"); });
    EXPECT_EQ(outcome.text.substr(13), "I T\\x0a\\x1b[31mX: text\n");
}

TEST(DlogContent, ShowsANullByteAndWhatFollowsIt)
{
    const Outcome outcome =
        RunChild([] { return __dlog_print(LOG_ID_MAIN, DLOG_INFO, "TAG", "a%cb", 0); });
    EXPECT_EQ(outcome.text.substr(13), "I TAG: a\\x00b\n");
}

TEST(DlogContent, KeepsUtf8)
{
    const char* text = "Ä 뒤로 \U0001f600 \u00a0\u07ff\u0800\uffff\U00010000\U0010ffff";
    EXPECT_EQ(Written(text), "I TAG: " + std::string(text) + "\n");
}

TEST(DlogContent, ShowsBytesThatAreNotUtf8)
{
    EXPECT_EQ(Written("a\xff\xfe"), "I TAG: a\\xff\\xfe\n");
    EXPECT_EQ(Written("lone \x80 cut \xe2\x82"), "I TAG: lone \\x80 cut \\xe2\\x82\n");
    EXPECT_EQ(Written("overlong \xc0\xaf \xe0\x80\xaf \xf0\x80\x80\xaf"),
              "I TAG: overlong \\xc0\\xaf \\xe0\\x80\\xaf \\xf0\\x80\\x80\\xaf\n");
    EXPECT_EQ(Written("surrogate \xed\xa0\x80 above \xf4\x90\x80\x80"),
              "I TAG: surrogate \\xed\\xa0\\x80 above \\xf4\\x90\\x80\\x80\n");
}

TEST(DlogLevel, DropsWhatIsBelowIt)
{
    const std::pair<const char*, std::string> levels[] = {
        {"debug", "DIWE"}, {"info", "IWE"},   {"warn", "WE"}, {"error", "E"},
        {"silent", ""},    {nullptr, "DIWE"}, {"", "DIWE"}};
    for (const auto& [level, expected] : levels)
    {
        const Outcome outcome = RunChild(
            []
            {
                for (int priority = DLOG_DEBUG; priority <= DLOG_ERROR; ++priority)
                    __dlog_print(LOG_ID_MAIN, priority, "TAG", "text");
                return 0;
            },
            level);
        std::string letters;
        for (const std::string& line : Lines(outcome.text))
            letters += line[13];
        EXPECT_EQ(letters, expected) << (level == nullptr ? "unset" : level);
    }
}

TEST(DlogLevel, MakesADroppedLineReturnZero)
{
    EXPECT_EQ(RunChild([] { return Print("text"); }, "error").result, 0);
}

TEST(DlogLevel, ThatIsUnknownIsReportedOnceAndDropsNothing)
{
    const Outcome outcome = RunChild(
        []
        {
            Print("first");
            return Print("second");
        },
        "loud\n");
    const auto lines = Lines(outcome.text);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_THAT(lines[0], HasSubstr("W WATCH_PORT: DLOG_LEVEL is \"loud\\x0a\""));
    EXPECT_THAT(lines[0], HasSubstr("debug, info, warn, error, silent"));
    EXPECT_THAT(lines[1], EndsWith("first"));
    EXPECT_THAT(lines[2], EndsWith("second"));
}
