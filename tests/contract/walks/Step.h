#ifndef TESTS_CONTRACT_WALKS_STEP_H
#define TESTS_CONTRACT_WALKS_STEP_H

#include <random>
#include <string>
#include <vector>

/** What a walk can do; each is possible in every state, where it makes no sense it is nothing. */
enum class Kind
{
    PushAnimated,
    PushInserted,
    PopAnimated,
    PopAtOnce,
    PopTo,
    PopTop,
    DeleteItem,
    DeleteTop,
    DeleteAbove,
    DeleteBetween,
    ReleaseHandle,
    RefusePops,
    EndTransition,
    Pause,
    Resume,
    RegisterApp,
    UnregisterApp,
    RegisterRotary,
    UnregisterRotary,
    ActivateWidget,
    DeactivateWidget,
    DeleteObject,
    Detent,
    Count
};

struct Step
{
    Kind kind;

    /** Which screen, listener or object, as a remainder of how many there are. */
    unsigned first;

    /** Which other one, or with a listener or without. */
    unsigned second;
};

using Steps = std::vector<Step>;

/** The walk of a seed. */
inline Steps MakeSteps(unsigned seed)
{
    std::mt19937 random(seed);
    Steps steps(5 + random() % 56);
    for (Step& step : steps)
    {
        step = {static_cast<Kind>(random() % static_cast<unsigned>(Kind::Count)),
                static_cast<unsigned>(random() % 64), static_cast<unsigned>(random() % 64)};
    }
    return steps;
}

inline std::string Describe(const Steps& steps)
{
    static const char* const kNames[] = {"PushAnimated",     "PushInserted",   "PopAnimated",
                                         "PopAtOnce",        "PopTo",          "PopTop",
                                         "DeleteItem",       "DeleteTop",      "DeleteAbove",
                                         "DeleteBetween",    "ReleaseHandle",  "RefusePops",
                                         "EndTransition",    "Pause",          "Resume",
                                         "RegisterApp",      "UnregisterApp",  "RegisterRotary",
                                         "UnregisterRotary", "ActivateWidget", "DeactivateWidget",
                                         "DeleteObject",     "Detent"};
    std::string text;
    for (const Step& step : steps)
    {
        text += "\n  " + std::string(kNames[static_cast<int>(step.kind)]) + "(" +
                std::to_string(step.first) + ", " + std::to_string(step.second) + ")";
    }
    return text;
}

#endif
