#include "faults/Difference.h"
#include "faults/Ways.h"
#include "faults/scenes/Stage.h"
#include "harness/Toolkit.h"
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>

namespace
{

struct Matrix
{
    std::string text;
    std::set<std::string> seenCalls;
    int cells = 0;
};

void AddCell(Matrix& matrix, const Scene& scene, const Lines& ordinary, const Ways::Way& way,
             const std::string& call, int nth)
{
    const Difference difference = Compare(ordinary, Play(scene, [&] { way.arm(call, nth); }));
    matrix.text += call + " " + std::to_string(nth) + ", " + way.name + ": ";
    matrix.text += difference.abandonedCalls > 0
                       ? "abandons " + std::to_string(difference.abandonedCalls) +
                             (difference.abandonedCalls == 1 ? " call\n" : " calls\n")
                       : "goes on\n";
    for (const std::string& line : difference.lines)
    {
        matrix.text += "    " + line + "\n";
    }
    ++matrix.cells;
}

void AddScene(Matrix& matrix, const Scene& scene)
{
    const Lines ordinary = Play(scene, nullptr);
    matrix.text += "\n== " + scene.name + "\n";
    for (std::size_t i = 0; i < ordinary.size(); ++i)
    {
        matrix.text += std::to_string(i + 1) + ": " + ordinary[i] + "\n";
    }
    matrix.text += "\n";
    const std::map<std::string, int> times = TimesMade();
    for (const auto& [call, number] : times)
    {
        if (number > 0)
        {
            matrix.seenCalls.insert(call);
        }
    }
    for (const Ways::Call& call : Ways::AllCalls())
    {
        for (int nth = 1; times.count(call.name) && nth <= times.at(call.name); ++nth)
        {
            for (const Ways::Way& way : call.ways)
            {
                AddCell(matrix, scene, ordinary, way, call.name, nth);
            }
        }
    }
}

// Played once for all tests.
const Matrix& PlayedMatrix()
{
    static const Matrix kMatrix = []
    {
        StartToolkit();
        Matrix matrix;
        for (const Scene& scene : AllScenes())
        {
            AddScene(matrix, scene);
        }
        return matrix;
    }();
    return kMatrix;
}

Lines LinesOf(std::istream& text)
{
    Lines lines;
    std::string line;
    while (std::getline(text, line))
    {
        lines.push_back(line);
    }
    return lines;
}

// The table without the words at its head.
Lines ExpectedTable()
{
    std::ifstream file(FAULT_MATRIX);
    Lines lines = LinesOf(file);
    const auto begin =
        std::find_if(lines.begin(), lines.end(),
                     [](const std::string& line) { return line.compare(0, 3, "== ") == 0; });
    lines.erase(lines.begin(), begin);
    return lines;
}

TEST(FaultMatrixTest, EveryFailureOfEveryCallEndsAsTheTableSays)
{
    std::istringstream text(PlayedMatrix().text.substr(1));
    const Lines actual = LinesOf(text);
    const char* output = std::getenv("WRITE_FAULT_MATRIX");
    if (output)
    {
        std::ofstream(output) << PlayedMatrix().text.substr(1);
    }

    const Lines expected = ExpectedTable();

    const std::size_t common = std::min(expected.size(), actual.size());
    std::string scene;
    for (std::size_t i = 0; i < common; ++i)
    {
        scene = expected[i].compare(0, 3, "== ") == 0 ? expected[i] : scene;
        ASSERT_EQ(actual[i], expected[i]) << scene << ", line " << i + 1 << " of the table";
    }
    EXPECT_EQ(actual.size(), expected.size());
    RecordProperty("cells", PlayedMatrix().cells);
    std::printf("%d calls, %zu scenes, %d cells\n", static_cast<int>(Ways::AllCalls().size()),
                AllScenes().size(), PlayedMatrix().cells);
}

TEST(FaultMatrixTest, EveryCallHasAWayToFailOrAReasonWhyItCannot)
{
    for (const Ways::Call& call : Ways::AllCalls())
    {
        EXPECT_EQ(call.ways.empty(), !Ways::WhyItCannotFail(call.name).empty()) << call.name;
    }
}

TEST(FaultMatrixTest, EveryCallIsMadeInAScene)
{
    for (const Ways::Call& call : Ways::AllCalls())
    {
        EXPECT_EQ(PlayedMatrix().seenCalls.count(call.name), 1U) << call.name;
    }
}

} // namespace
