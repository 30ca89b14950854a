#include "port/dlog/LogChild.h"
#include <dlog.h>

#include <csignal>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

namespace
{
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

void FillPipe(int stream)
{
    fcntl(stream, F_SETFL, O_NONBLOCK);
    while (write(stream, "x", 1) == 1)
    {
    }
    fcntl(stream, F_SETFL, 0);
}
} // namespace

TEST(DlogStream, WhoseReaderIsGoneSendsNoSignal)
{
    EXPECT_EQ(RunChild(
                  []
                  {
                      int ends[2];
                      if (pipe(ends) != 0)
                          return 1;
                      dup2(ends[1], STDERR_FILENO);
                      close(ends[0]);
                      signal(SIGPIPE, SIG_DFL);
                      return Print("text");
                  })
                  .result,
              DLOG_ERROR_NOT_WRITTEN);
}

TEST(DlogStream, ThatIsClosedIsReported)
{
    EXPECT_EQ(RunChild(
                  []
                  {
                      close(STDERR_FILENO);
                      return Print("text");
                  })
                  .result,
              DLOG_ERROR_NOT_WRITTEN);
}

TEST(DlogStream, WhoseReaderSleepsDoesNotHoldTheProgramUp)
{
    // A hundred lines cost one patience of 100 ms, not a hundred of them.
    EXPECT_EQ(RunChild(
                  []
                  {
                      int ends[2];
                      if (pipe(ends) != 0)
                          return 1;
                      dup2(ends[1], STDERR_FILENO);
                      FillPipe(STDERR_FILENO);
                      timespec before{};
                      timespec after{};
                      clock_gettime(CLOCK_MONOTONIC, &before);
                      for (int i = 0; i < 100; ++i)
                      {
                          if (Print("text") != DLOG_ERROR_NOT_WRITTEN)
                              return 2;
                      }
                      clock_gettime(CLOCK_MONOTONIC, &after);
                      return after.tv_sec - before.tv_sec < 5 ? 0 : 3;
                  })
                  .result,
              0);
}

TEST(DlogStream, WhoseReaderWakesUpGetsWholeLinesAgain)
{
    const Outcome outcome = RunChild(
        []
        {
            const int original = dup(STDERR_FILENO);
            int ends[2];
            if (pipe2(ends, O_NONBLOCK) != 0)
                return 1;
            dup2(ends[1], STDERR_FILENO);
            Print(std::string(200000, 'm').c_str());
            const std::string cut = ReadAll(ends[0]);
            const int result = Print("whole");
            const std::string next = ReadAll(ends[0]);
            dup2(original, STDERR_FILENO);
            Print(cut.back() == 'm' ? "the line was cut" : "the line was not cut");
            Print(next.front() == '\n' ? "the next stands alone" : next.c_str());
            return result > 0 ? 0 : 2;
        });
    EXPECT_EQ(outcome.result, 0);
    EXPECT_THAT(outcome.text, HasSubstr("the line was cut"));
    EXPECT_THAT(outcome.text, HasSubstr("the next stands alone"));
}

TEST(DlogStream, MayBeAFile)
{
    EXPECT_EQ(RunChild(
                  []
                  {
                      char name[] = "/tmp/dlog-test-XXXXXX";
                      const int file = mkostemp(name, O_CLOEXEC);
                      unlink(name);
                      dup2(file, STDERR_FILENO);
                      Print("one");
                      Print("two");
                      lseek(file, 0, SEEK_SET);
                      return Lines(ReadAll(file)).size() == 2 ? 0 : 1;
                  })
                  .result,
              0);
}

TEST(DlogStream, MayBeASocket)
{
    EXPECT_EQ(RunChild(
                  []
                  {
                      int ends[2];
                      if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0)
                          return 1;
                      dup2(ends[1], STDERR_FILENO);
                      char line[128];
                      const int written = Print("text");
                      return read(ends[0], line, sizeof line) == written ? 0 : 2;
                  })
                  .result,
              0);
}

TEST(DlogStream, OfAnotherUserIsWrittenTo)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can become another user";
    const Outcome outcome = RunChild(
        []
        {
            if (setuid(65534) != 0 || open("/proc/self/fd/2", O_WRONLY) >= 0)
                return 100;
            return Print("text");
        });
    EXPECT_NE(outcome.result, 100);
    EXPECT_THAT(outcome.text, EndsWith("I TAG: text\n"));
}

TEST(DlogStream, MayBeReplacedBetweenTwoLines)
{
    const Outcome outcome = RunChild(
        []
        {
            const int original = dup(STDERR_FILENO);
            const int nothing = open("/dev/null", O_WRONLY | O_CLOEXEC);
            dup2(nothing, STDERR_FILENO);
            Print("lost");
            dup2(original, STDERR_FILENO);
            return Print("kept");
        });
    EXPECT_THAT(outcome.text, HasSubstr("kept"));
    EXPECT_THAT(outcome.text, Not(HasSubstr("lost")));
}
