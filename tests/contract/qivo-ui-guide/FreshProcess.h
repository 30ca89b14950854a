#ifndef TESTS_CONTRACT_QIVO_UI_GUIDE_FRESHPROCESS_H
#define TESTS_CONTRACT_QIVO_UI_GUIDE_FRESHPROCESS_H

#include "harness/Platform.h"
#include "harness/Recorder.h"
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>

/** Says on stderr what failed; a child has no reporter of its own. Returns the exit status. */
inline int ReportFailures()
{
    const testing::TestResult& result =
        *testing::UnitTest::GetInstance()->current_test_info()->result();
    for (int i = 0; i < result.total_part_count(); ++i)
    {
        const testing::TestPartResult& part = result.GetTestPartResult(i);
        std::fprintf(stderr, "%s:%d: %s\n", part.file_name() ? part.file_name() : "",
                     part.line_number(), part.message());
    }
    return result.Failed() ? EXIT_FAILURE : EXIT_SUCCESS;
}

/**
 * Runs a test's body in a process of its own, whose expectations count as the test's.
 *
 * What the application remembers for the life of its process is new there. The parent must not
 * have started the toolkit; the body may.
 */
inline void RunInFreshProcess(const std::function<void()>& body)
{
    const auto runAndExit = [&]
    {
        Recorder::Reset();
        Platform::Reset();
        body();
        std::exit(ReportFailures());
    };
    EXPECT_EXIT(runAndExit(), testing::ExitedWithCode(EXIT_SUCCESS), "");
}

#endif
