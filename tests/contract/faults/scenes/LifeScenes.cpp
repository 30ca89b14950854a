#include "faults/scenes/Stage.h"
#include "harness/Toolkit.h"
#include "life/Life.h"

using QivoUi::Application;

namespace
{

class LifeStage : public Stage
{
public:
    void Set() override
    {
        StartToolkit();
        Recorder::Reset();
        Platform::Reset();
    }

    void Play() override
    {
        const int status = Life::Run();
        const Allocations::Pause pause;
        Recorder::Add("main returns " + std::to_string(status));
    }

    void Clear() override { Life::EndProcess(); }
};

} // namespace

std::vector<Scene> LifeScenes()
{
    return {{"from launch to exit", [] { return std::make_unique<LifeStage>(); }}};
}
