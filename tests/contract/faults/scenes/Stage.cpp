#include "faults/scenes/Stage.h"

#include "support/Allocations.h"
#include <algorithm>
#include <stdexcept>

namespace
{

std::map<std::string, int> sTimesMade;

}

const std::map<std::string, int>& TimesMade()
{
    return sTimesMade;
}

const std::vector<Scene>& AllScenes()
{
    static const std::vector<Scene> kScenes = []
    {
        std::vector<Scene> scenes;
        for (const auto& group :
             {LifeScenes(), NavigationScenes(), ViewScenes(), RotaryScenes(), UtilityScenes()})
        {
            scenes.insert(scenes.end(), group.begin(), group.end());
        }
        return scenes;
    }();
    return kScenes;
}

Recorder::Lines Play(const Scene& scene, const std::function<void()>& arm)
{
    const std::unique_ptr<Stage> stage = scene.make();
    stage->Set();
    Recorder::Take();
    const std::map<std::string, int> before = Recorder::TimesMade();
    Recorder::NumberFailures();
    if (arm)
    {
        arm();
    }
    try
    {
        stage->Play();
    }
    catch (const std::exception& failure)
    {
        Recorder::Add(std::string("throws ") + failure.what());
    }
    Allocations::Stop();
    sTimesMade = Recorder::TimesMade();
    for (const auto& [call, times] : before)
    {
        sTimesMade[call] -= times;
    }
    Recorder::Lines lines = Recorder::Take();
    const std::string state = stage->State();
    if (!state.empty())
    {
        lines.push_back(state);
    }
    std::transform(lines.begin(), lines.end(), lines.begin(), Recorder::WithNames);
    stage->Clear();
    return lines;
}
