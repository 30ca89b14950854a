#include "port/dlog/LogChild.h"
#include "support/Allocations.h"
#include <dlog.h>

#include <gtest/gtest.h>
#include <new>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

TEST(DlogMemory, IsNotTakenFromTheHeap)
{
    for (const size_t length : {4, 1000, 1023, 1024, 5000, 60000})
    {
        const std::string message(length, 'm');
        const Outcome outcome = RunChild(
            [&]
            {
                Allocations::Exhaust();
                Print(message.c_str());
                return Allocations::sCount == 0 ? 0 : 1;
            });
        EXPECT_EQ(outcome.result, 0) << length;
        EXPECT_TRUE(outcome.text.substr(13) == "I TAG: " + message + "\n") << length;
    }
}

TEST(DlogMemory, IsNotTakenFromTheHeapForTheReportOfAnUnknownLevel)
{
    const Outcome outcome = RunChild(
        []
        {
            Allocations::Exhaust();
            return Print("text");
        },
        "a level that nobody knows");
    EXPECT_EQ(Lines(outcome.text).size(), 2u);
}

TEST(DlogMemory, IsNotWantedByAHandlerThatLogsItsEnd)
{
    const Outcome outcome = RunChild(
        []
        {
            std::set_new_handler(
                []
                {
                    Print("no memory");
                    _exit(7);
                });
            Allocations::Exhaust();
            ::operator delete(::operator new(1));
            return 0;
        });
    EXPECT_EQ(outcome.result, 7);
    EXPECT_EQ(outcome.text.substr(13), "I TAG: no memory\n");
}

TEST(DlogMemory, ThatNoPagesAreLeftOfCostsOnlyTheLongLines)
{
    const std::string message(1000000, 'm');
    const Outcome outcome = RunChild(
        [&]
        {
            // A sanitizer takes memory when it first sees a call of the C library.
            Print("before");
            const rlimit none = {1, 1};
            setrlimit(RLIMIT_AS, &none);
            const int result = Print(message.c_str());
            Print("text");
            return result;
        });
    EXPECT_EQ(outcome.result, DLOG_ERROR_OUT_OF_MEMORY);
    const std::vector<std::string> lines = Lines(outcome.text);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1].substr(13), "I TAG: text");
}
