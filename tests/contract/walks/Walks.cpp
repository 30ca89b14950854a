#include "walks/Walks.h"
#include "walks/Death.h"
#include <algorithm>
#include <cstdio>

namespace Walks
{

namespace
{

// The shortest walk that still fails, found by leaving out ever smaller pieces.
Steps Shrink(const Try& fails, Steps steps)
{
    for (std::size_t piece = steps.size() / 2; piece > 0;)
    {
        bool isShorter = false;
        for (std::size_t begin = 0; begin + piece <= steps.size();)
        {
            Steps shorter = steps;
            const auto first = shorter.begin() + static_cast<std::ptrdiff_t>(begin);
            shorter.erase(first, first + static_cast<std::ptrdiff_t>(piece));
            if (!fails(shorter).empty())
            {
                steps = shorter;
                isShorter = true;
            }
            else
            {
                ++begin;
            }
        }
        piece = isShorter ? std::min(piece, steps.size() / 2) : piece / 2;
    }
    return steps;
}

std::string TryAll(const Try& fails, unsigned first, unsigned count)
{
    std::size_t steps = 0;
    for (unsigned seed = first; seed < first + count; ++seed)
    {
        const std::string name = "WALK_SEED=" + std::to_string(seed) + " WALKS=1";
        Death::SetLastWords("died in a random walk, alone and shrunk by " + name + "\n");
        const Steps walk = MakeSteps(seed);
        steps += walk.size();
        if (!fails(walk).empty())
        {
            const Steps shrunk = Shrink(fails, walk);
            return name + ": " + fails(shrunk) + Describe(shrunk);
        }
    }
    std::printf("%u walks from WALK_SEED=%u, %zu steps\n", count, first, steps);
    return "";
}

} // namespace

std::string Fail(const Try& fails, unsigned first, unsigned count)
{
    Death::Watch();
    const Try failsInChild = [&](const Steps& walk)
    { return Death::AskInChild([&] { return fails(walk); }); };
    const std::string fault = TryAll(count == 1 ? failsInChild : fails, first, count);
    Death::SetLastWords("");
    return fault;
}

} // namespace Walks
