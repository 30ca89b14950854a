#include "harness/Toolkit.h"
#include "walks/Walks.h"
#include <algorithm>
#include <csignal>
#include <gmock/gmock.h>

using testing::MatchesRegex;

namespace
{

constexpr unsigned kFirst = 20;
constexpr unsigned kCount = 1000;

// A pause and, some time after it, the deletion of an object: few walks have both.
bool IsDeadly(const Steps& walk)
{
    const auto is = [](Kind kind)
    { return [kind](const Step& step) { return step.kind == kind; }; };
    const auto pause = std::find_if(walk.begin(), walk.end(), is(Kind::Pause));
    return std::find_if(pause, walk.end(), is(Kind::DeleteObject)) != walk.end();
}

unsigned FirstDeadlySeed()
{
    unsigned seed = kFirst;
    while (!IsDeadly(MakeSteps(seed)))
    {
        ++seed;
    }
    return seed;
}

std::string NameOf(unsigned seed)
{
    return "WALK_SEED=" + std::to_string(seed) + " WALKS=1";
}

// A sanitizer's own end is no signal.
bool IsDead(int status)
{
    return !WIFEXITED(status) || WEXITSTATUS(status) != 0;
}

// With the toolkit, which has its own mind about signals.
class WalkDeathTest : public ToolkitTest, public testing::WithParamInterface<int>
{
protected:
    Walks::Try mDies = [](const Steps& walk)
    {
        if (IsDeadly(walk))
        {
            std::raise(GetParam());
        }
        return std::string();
    };
};

TEST_P(WalkDeathTest, LeavesTheSeedOfTheWalkThatTheProcessDiesIn)
{
    // The toolkit has a thread of its own.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    ASSERT_GT(FirstDeadlySeed(), kFirst);
    EXPECT_EXIT(Walks::Fail(mDies, kFirst, kCount), IsDead,
                "alone and shrunk by " + NameOf(FirstDeadlySeed()) + "\n");
}

TEST_P(WalkDeathTest, IsShrunkToTheFewestStepsWhenTheWalkIsTriedAlone)
{
    const std::string fault = Walks::Fail(mDies, FirstDeadlySeed(), 1);
    EXPECT_THAT(fault, MatchesRegex(NameOf(FirstDeadlySeed()) + ": dies [^\n]*\n"
                                                                "  Pause[^\n]*\n"
                                                                "  DeleteObject[^\n]*"));
}

INSTANTIATE_TEST_SUITE_P(EachEnd, WalkDeathTest, testing::Values(SIGABRT, SIGSEGV, SIGTERM));

} // namespace
