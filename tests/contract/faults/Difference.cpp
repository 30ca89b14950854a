#include "faults/Difference.h"

#include <algorithm>

using Recorder::Lines;

namespace
{

bool IsCall(const std::string& line)
{
    const std::size_t bracket = line.find('(');
    return bracket != std::string::npos &&
           bracket == line.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789_") &&
           line.back() == ')' && bracket > 5;
}

// Two lines are the same step when they call the same, or tell the state afterwards; all else must
// be the same to the letter.
std::string StepOf(const std::string& line)
{
    if (line.compare(0, 5, "then ") == 0)
    {
        return "then";
    }
    return IsCall(line) ? line.substr(0, line.find('(')) : line;
}

// The lengths of the longest common subsequences of what follows each pair of places.
std::vector<std::vector<int>> CommonLengths(const Lines& a, const Lines& b)
{
    std::vector<std::vector<int>> lengths(a.size() + 1, std::vector<int>(b.size() + 1, 0));
    for (std::size_t i = a.size(); i-- > 0;)
    {
        for (std::size_t j = b.size(); j-- > 0;)
        {
            lengths[i][j] = a[i] == b[j] ? lengths[i + 1][j + 1] + 1
                                         : std::max(lengths[i + 1][j], lengths[i][j + 1]);
        }
    }
    return lengths;
}

Lines StepsOf(const Lines& lines)
{
    Lines steps;
    std::transform(lines.begin(), lines.end(), std::back_inserter(steps), StepOf);
    return steps;
}

std::string LeftOut(const Lines& ordinary, std::size_t first, std::size_t last)
{
    const std::string begin = "- " + std::to_string(first + 1);
    return first == last ? begin + ": " + ordinary[first]
                         : begin + " to " + std::to_string(last + 1) + ": " + ordinary[first] +
                               " ... " + ordinary[last];
}

} // namespace

Difference Compare(const Lines& ordinary, const Lines& actual)
{
    Difference difference;
    const Lines a = StepsOf(ordinary);
    const Lines b = StepsOf(actual);
    const auto lengths = CommonLengths(a, b);
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < a.size() || j < b.size())
    {
        if (i < a.size() && j < b.size() && a[i] == b[j])
        {
            if (ordinary[i] != actual[j])
            {
                difference.lines.push_back("~ " + std::to_string(i + 1) + ": " + actual[j]);
            }
            ++i;
            ++j;
        }
        else if (j < b.size() && (i == a.size() || lengths[i][j + 1] >= lengths[i + 1][j]))
        {
            difference.lines.push_back("+ after " + std::to_string(i) + ": " + actual[j]);
            ++j;
        }
        else
        {
            const std::size_t first = i;
            do
            {
                difference.abandonedCalls += IsCall(ordinary[i]);
                ++i;
            } while (i < a.size() && lengths[i + 1][j] >= lengths[i][std::min(j + 1, b.size())] &&
                     (j == b.size() || a[i] != b[j]));
            difference.lines.push_back(LeftOut(ordinary, first, i - 1));
        }
    }
    return difference;
}
