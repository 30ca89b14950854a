#include "common/NaviFrame.h"
#include "faults/scenes/Stage.h"
#include "harness/Toolkit.h"
#include "qivo-ui-guide/GuideApplication.h"
#include "support/Allocations.h"
#include <algorithm>
#include <cstdio>
#include <new>

using QivoUi::Application;
using QivoUi::GuideApplication;
using QivoUi::NaviFrame;

namespace
{

const Lines kAskedToExit = {"mark(SOnOutOfMemory)", "ui_app_exit()"};

// Plays a scene; its nth allocation fails at first. @return how many allocations there were
long PlayFailing(const Scene& scene, long nth, std::new_handler handler, Lines& lines)
{
    lines = Play(scene,
                 [nth, handler]
                 {
                     std::set_new_handler(handler);
                     Allocations::Start(nth);
                 });
    std::set_new_handler(nullptr);
    return Allocations::sCount;
}

// Whether the operation ran as it ordinarily does up to a failure that then was told, by an
// exception or by the operation that caught it.
bool IsAbandonedWithWord(const Lines& lines, const Lines& ordinary)
{
    const auto word = std::find_if(lines.begin(), lines.end(),
                                   [](const std::string& line)
                                   { return line.find("std::bad_alloc") != std::string::npos; });
    const auto length = word - lines.begin();
    return word != lines.end() && static_cast<std::size_t>(length) <= ordinary.size() &&
           std::equal(lines.begin(), word, ordinary.begin());
}

class AllocationFailureTest : public testing::Test
{
protected:
    void SetUp() override { StartToolkit(); }
};

TEST_F(AllocationFailureTest, AsksTheWatchToEndTheApplicationAndGoesOn)
{
    long cells = 0;
    for (const Scene& scene : AllScenes())
    {
        Lines ordinary;
        const long count = PlayFailing(scene, 0, Application::SOnOutOfMemory, ordinary);
        for (long nth = 1; nth <= count; ++nth, ++cells)
        {
            Lines lines;
            PlayFailing(scene, nth, Application::SOnOutOfMemory, lines);
            const auto found =
                std::search(lines.begin(), lines.end(), kAskedToExit.begin(), kAskedToExit.end());
            ASSERT_NE(found, lines.end()) << scene.name << ", allocation " << nth;
            lines.erase(found, found + 2);
            ASSERT_EQ(lines, ordinary) << scene.name << ", allocation " << nth;
        }
    }
    EXPECT_GT(cells, 0);
    std::printf("%ld failed allocations with the application's handler\n", cells);
}

TEST_F(AllocationFailureTest, AbandonsTheOperationWhereNoHandlerIsSet)
{
    long cells = 0;
    for (const Scene& scene : AllScenes())
    {
        // The application sets its handler itself, and the toolkit's own code, within which a
        // deletion allocates, must not be left by an exception.
        if (scene.name == LifeScenes().front().name ||
            scene.name == "a deletion after the frame's end")
        {
            continue;
        }
        Lines ordinary;
        const long count = PlayFailing(scene, 0, nullptr, ordinary);
        for (long nth = 1; nth <= count; ++nth, ++cells)
        {
            Lines lines;
            PlayFailing(scene, nth, nullptr, lines);
            EXPECT_TRUE(IsAbandonedWithWord(lines, ordinary))
                << scene.name << ", allocation " << nth << ": " << testing::PrintToString(lines);
        }
        Lines again;
        PlayFailing(scene, 0, nullptr, again);
        EXPECT_EQ(again, ordinary) << scene.name;
    }
    EXPECT_GT(cells, 0);
    std::printf("%ld failed allocations without a handler\n", cells);
}

TEST_F(AllocationFailureTest, AsksForTheExitThoughNothingIsLeftToAskWith)
{
    Recorder::Take();
    Allocations::Exhaust();
    Application::SOnOutOfMemory();
    EXPECT_EQ(Allocations::Stop(), 0);
    EXPECT_EQ(Recorder::Take(), kAskedToExit);
}

TEST_F(AllocationFailureTest, KeepsTheEarlierControllerWhenNoneCanBeMade)
{
    GuideApplication app;
    app.AppControllOperationImpl("", nullptr);
    const auto earlier = app.mGuideViewController;

    Allocations::Start(1);
    EXPECT_THROW(app.AppControllOperationImpl("", nullptr), std::bad_alloc);
    Allocations::Stop();

    EXPECT_EQ(app.mGuideViewController, earlier);
    NaviFrame::Destroy();
    Recorder::Reset();
    Platform::Reset();
}

} // namespace
