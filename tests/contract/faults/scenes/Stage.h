#ifndef TESTS_CONTRACT_FAULTS_STAGE_H
#define TESTS_CONTRACT_FAULTS_STAGE_H

#include "harness/Recorder.h"
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

/** One operation of the application or its framework, to be played with and without failures. */
class Stage
{
public:
    virtual ~Stage() = default;

    /** Makes everything that the operation needs. */
    virtual void Set() = 0;

    /** Does it. */
    virtual void Play() = 0;

    /** What there is afterwards, in a line; empty when nothing needs telling. */
    virtual std::string State() { return ""; }

    /** Deletes everything. */
    virtual void Clear() = 0;
};

struct Scene
{
    std::string name;
    std::function<std::unique_ptr<Stage>()> make;
};

/** The path from launch to exit, and every operation of the framework and the utilities. */
const std::vector<Scene>& AllScenes();

/** The scenes of one group; AllScenes() joins them. */
std::vector<Scene> LifeScenes();
std::vector<Scene> NavigationScenes();
std::vector<Scene> ViewScenes();
std::vector<Scene> RotaryScenes();
std::vector<Scene> UtilityScenes();

/**
 * Plays a scene.
 *
 * @param arm what is to fail, told right before the operation; may be null
 * @return every call and log line of the operation, an exception that came out of it as
 *         "throws TEXT", and the state afterwards
 */
Recorder::Lines Play(const Scene& scene, const std::function<void()>& arm);

/** How often the scene that was played last made each call. */
const std::map<std::string, int>& TimesMade();

#endif
