#include "common/RotaryEventManager.h"
#include "qivo-ui-guide/FreshProcess.h"

using QivoUi::RotaryEventManager;

namespace
{

TEST(RotaryEventManagerFirstUseTest, KnowsNoConformantAndNoSurfaceBeforeAnyManager)
{
    RunInFreshProcess(
        []
        {
            EXPECT_EQ(RotaryEventManager::mConformant, nullptr);
            EXPECT_EQ(RotaryEventManager::GetCircleSurface(), nullptr);
            EXPECT_EQ(Recorder::Take(), Recorder::Lines());
        });
}

} // namespace
