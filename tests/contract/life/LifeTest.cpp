#include "life/Life.h"

#include "common/NaviFrame.h"
#include "common/RotaryEventManager.h"
#include "harness/PlatformState.h"
#include "harness/Toolkit.h"
#include <algorithm>
#include <cstdlib>

using QivoUi::Application;
using QivoUi::NaviFrame;
using QivoUi::RotaryEventManager;

namespace
{

// Every call and log line of one life.
Lines Live()
{
    EXPECT_EQ(Life::Run(), 0);
    Lines lines = Recorder::Take();
    std::transform(lines.begin(), lines.end(), lines.begin(), Recorder::WithNames);
    return lines;
}

int Lives()
{
    const char* lives = std::getenv("LIVES");
    return lives ? std::atoi(lives) : 50;
}

class LifeTest : public testing::Test
{
protected:
    void SetUp() override
    {
        StartToolkit();
        Recorder::Reset();
        Platform::Reset();
    }
    void TearDown() override { Life::EndProcess(); }
};

TEST_F(LifeTest, LeavesOnlyWhatItIsToLeave)
{
    Live();

    // The watch ends the process next; what is left goes with it.
    EXPECT_EQ(NaviFrame::mInstance, nullptr);
    EXPECT_EQ(Life::TheApplication(), nullptr);
    EXPECT_TRUE(Platform::sState.settingCallbacks.empty());
    // The window and with it every widget, the page's back key among them.
    EXPECT_NE(Application::mWindow, nullptr);
    EXPECT_EQ(Platform::sState.backCallbacks.size(), 1u);
    // The bezel's manager with the page's circle scroller, which is still activated.
    ASSERT_NE(RotaryEventManager::mPThis, nullptr);
    EXPECT_EQ(RotaryEventManager::mPThis->mRotaryEventDataList.size(), 1u);
    EXPECT_NE(Platform::ActivatedObject(), nullptr);
    // The charger's callback: only the page's deletion takes it away.
    EXPECT_NE(Platform::sState.chargerCallback, nullptr);
    EXPECT_EQ(eina_list_count(elm_theme_extension_list_get(nullptr)), 1u);
}

TEST_F(LifeTest, IsTheSameEveryTime)
{
    const Lines first = Live();
    ASSERT_FALSE(first.empty());
    Life::EndProcess();
    for (int life = 2; life <= Lives(); ++life)
    {
        ASSERT_EQ(Live(), first) << "life " << life;
        Life::EndProcess();
    }
}

} // namespace
