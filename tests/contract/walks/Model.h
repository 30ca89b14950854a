#ifndef TESTS_CONTRACT_WALKS_MODEL_H
#define TESTS_CONTRACT_WALKS_MODEL_H

#include "harness/Recorder.h"
#include "walks/Step.h"
#include <set>
#include <vector>

/** What the framework is to do, in few words: lists of numbers and the lines that are heard. */
class Model
{
public:
    /** Takes a step. @return the log lines and the listeners' calls that it brings */
    Recorder::Lines Take(const Step& step);

    struct Screen
    {
        bool listens = false;
        bool isMapped = false;
        bool isBound = true;
        bool hasHandle = true;
        bool refuses = false;
        bool isMoving = false;
    };

    struct Record
    {
        int object;
        bool listens;
    };

    /** All that were ever pushed, and the numbers of those on the stack from the bottom up. */
    std::vector<Screen> mScreens;
    std::vector<int> mStack;

    /** The activation stack of the bezel's objects, the activated one last. */
    std::vector<Record> mRecords;

    static constexpr int kObjects = 3;

private:
    int ScreenOf(unsigned number) const;
    int Top() const { return mStack.empty() ? -1 : mStack.back(); }
    void Tell(int screen, const char* call);
    void Log(const std::string& line) { mLines.push_back(line); }

    void Push(bool animated, const Step& step);
    void Pop(int screen, bool animated, int listener);
    bool ToolkitPops();
    void PopTo(int screen);
    void Delete(int screen);
    void DeleteAbove(int screen);
    void DeleteBetween(int upper, int lower);
    void DeleteListed(const std::vector<int>& screens, const char* function);
    void EndTransition();
    void TakeOnScreen(const Step& step);
    void TakeOnApplication(const Step& step);
    void TakeOnBezel(const Step& step);
    void Activate(int object, bool listens);
    void Deactivate(std::size_t record);
    void DeleteObject(int object);
    void Detent(int object, int direction);

    Recorder::Lines mLines;
    bool mIsPaused = false;
    std::string mTransitions;
    int mPopListener = -1;
    std::vector<int> mAppListeners = {0};
    int mCallbacks[kObjects] = {};
};

#endif
