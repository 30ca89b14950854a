#include "common/Log.h"

#include "common/NaviFrame.h"
#include "harness/Toolkit.h"
#include "qivo-ui-guide/Application.h"

using QivoUi::Application;
using QivoUi::LogBaseNameOffset;
using QivoUi::NaviFrame;

namespace
{

// The compiler finds the base name, not the running program.
static_assert(LogBaseNameOffset("qivo-ui/common/NaviFrame.cpp") == 15, "several directories");
static_assert(LogBaseNameOffset("/NaviFrame.cpp") == 1, "the root directory");
static_assert(LogBaseNameOffset("NaviFrame.cpp") == 0, "no directory");
static_assert(LogBaseNameOffset("../a.b/c") == 7, "dots");
static_assert(LogBaseNameOffset("a/") == 2, "nothing but a directory");
static_assert(LogBaseNameOffset("") == 0, "nothing at all");

class LogTest : public testing::Test
{
protected:
    void SetUp() override
    {
        Recorder::Reset();
        Platform::Reset();
    }

    void TearDown() override { NaviFrame::Destroy(); }

    // The one line that was logged since the test's start.
    static Platform::LogLine OnlyLine()
    {
        EXPECT_EQ(Platform::LogLines().size(), 1u);
        return Platform::LogLines().empty() ? Platform::LogLine() : Platform::LogLines().front();
    }
};

void ExpectOrigin(const Platform::LogLine& log, const char* function, int line)
{
    EXPECT_EQ(log.buffer, 0);
    EXPECT_EQ(log.tag, "QIVOUI_GUIDE");
    EXPECT_EQ(log.file, "LogTest.cpp");
    EXPECT_EQ(log.function, function);
    EXPECT_EQ(log.line, line);
}

TEST_F(LogTest, WritesAnErrorInRed)
{
    QIVO_LOG_ERROR("[Failed] Create Window");
    const int line = __LINE__ - 1;

    EXPECT_EQ(OnlyLine().priority, 6);
    EXPECT_EQ(OnlyLine().format, "%s: %s(%d) > \033[0;40;31m[Failed] Create Window\033[0;m");
    ExpectOrigin(OnlyLine(), "TestBody", line);
}

TEST_F(LogTest, WritesAWarningInYellow)
{
    QIVO_LOG_WARN("mIsAlive is false");
    const int line = __LINE__ - 1;

    EXPECT_EQ(OnlyLine().priority, 5);
    EXPECT_EQ(OnlyLine().format, "%s: %s(%d) > \033[1;40;33mmIsAlive is false\033[0;m");
    ExpectOrigin(OnlyLine(), "TestBody", line);
}

TEST_F(LogTest, WritesAnInformationInMagenta)
{
    QIVO_LOG_INFO("POWER KEY Released!");
    const int line = __LINE__ - 1;

    EXPECT_EQ(OnlyLine().priority, 4);
    EXPECT_EQ(OnlyLine().format, "%s: %s(%d) > \033[1;35mPOWER KEY Released!\033[0;m");
    ExpectOrigin(OnlyLine(), "TestBody", line);
}

TEST_F(LogTest, WritesAMarkerWithoutArguments)
{
    QIVO_LOG_MARK();
    const int line = __LINE__ - 1;

    EXPECT_EQ(OnlyLine().priority, 4);
    EXPECT_EQ(OnlyLine().format, "%s: %s(%d) > \033[1;35m ###\033[0;m");
    ExpectOrigin(OnlyLine(), "TestBody", line);
}

TEST_F(LogTest, WritesTheBeginOfAFunctionInBlue)
{
    QIVO_LOG_BEGIN();
    const int line = __LINE__ - 1;

    EXPECT_EQ(OnlyLine().priority, 4);
    EXPECT_EQ(OnlyLine().format, "%s: %s(%d) > \033[1;40;34m BEGIN >>>>\033[0;m");
    ExpectOrigin(OnlyLine(), "TestBody", line);
}

TEST_F(LogTest, WritesTheEndOfAFunctionInBlue)
{
    QIVO_LOG_END();
    const int line = __LINE__ - 1;

    EXPECT_EQ(OnlyLine().priority, 4);
    EXPECT_EQ(OnlyLine().format, "%s: %s(%d) > \033[1;40;34m END <<<<\033[0;m");
    ExpectOrigin(OnlyLine(), "TestBody", line);
}

TEST_F(LogTest, LeavesThePlaceholdersOfTheTextInTheFormat)
{
    QIVO_LOG_ERROR("first %s, then [%d]", "one", 2);

    EXPECT_EQ(OnlyLine().format, "%s: %s(%d) > \033[0;40;31mfirst %s, then [%d]\033[0;m");
    EXPECT_EQ(OnlyLine().text, "first one, then [2]");
}

TEST_F(LogTest, FillsInThePlaceholdersOfEachClass)
{
    QIVO_LOG_WARN("%s", "warning");
    QIVO_LOG_INFO("%d", 4);

    ASSERT_EQ(Platform::LogLines().size(), 2u);
    EXPECT_EQ(Platform::LogLines()[0].text, "warning");
    EXPECT_EQ(Platform::LogLines()[1].text, "4");
}

TEST_F(LogTest, WritesATextBehindTheFixedOneOfAMarkerOrTrace)
{
    QIVO_LOG_MARK(" %s", "here");
    QIVO_LOG_BEGIN("%d", 1);
    QIVO_LOG_END(" done");

    ASSERT_EQ(Platform::LogLines().size(), 3u);
    EXPECT_EQ(Platform::LogLines()[0].format, "%s: %s(%d) > \033[1;35m ### %s\033[0;m");
    EXPECT_EQ(Platform::LogLines()[0].text, " ### here");
    EXPECT_EQ(Platform::LogLines()[1].format, "%s: %s(%d) > \033[1;40;34m BEGIN >>>>%d\033[0;m");
    EXPECT_EQ(Platform::LogLines()[1].text, " BEGIN >>>>1");
    EXPECT_EQ(Platform::LogLines()[2].format, "%s: %s(%d) > \033[1;40;34m END <<<< done\033[0;m");
}

void LogFromAFunction()
{
    QIVO_LOG_MARK();
}

TEST_F(LogTest, NamesTheFunctionWithoutClassOrArguments)
{
    LogFromAFunction();
    EXPECT_EQ(OnlyLine().function, "LogFromAFunction");
}

TEST_F(LogTest, IsOneCallThatStandsAnywhereAStatementStands)
{
    int evaluations = 0;
    for (const bool isError : {true, false})
        if (isError)
            QIVO_LOG_ERROR("%d", ++evaluations);
        else
            QIVO_LOG_INFO("%d", ++evaluations);

    EXPECT_EQ(evaluations, 2);
    EXPECT_EQ(Platform::LogLines().size(), 2u);
}

TEST_F(LogTest, ShowsNoDirectoryOfAFileOfTheFramework)
{
    NaviFrame::GetInstance()->CreateNaviFrame(nullptr);

    EXPECT_EQ(OnlyLine().file, "NaviFrame.cpp");
    EXPECT_EQ(OnlyLine().function, "CreateNaviFrame");
    EXPECT_EQ(OnlyLine().format, "%s: %s(%d) > \033[0;40;31m[Failed] Invalid layout\033[0;m");
}

TEST_F(LogTest, ShowsNoDirectoryOfAFileOfTheApplication)
{
    Application::SOnDateAndTImeFormatChanged(SYSTEM_SETTINGS_KEY_LOCALE_TIMEFORMAT_24HOUR, nullptr);

    EXPECT_EQ(OnlyLine().file, "Application.cpp");
    EXPECT_EQ(OnlyLine().function, "SOnDateAndTImeFormatChanged");
    EXPECT_GT(OnlyLine().line, 0);
}

} // namespace
