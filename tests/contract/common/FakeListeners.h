#ifndef TESTS_CONTRACT_COMMON_FAKELISTENERS_H
#define TESTS_CONTRACT_COMMON_FAKELISTENERS_H

#include "common/NaviFrameLowerEventListener.h"
#include "common/NaviFramePopEventListener.h"
#include "common/NaviFramePopTransitionEventListener.h"
#include "common/NaviFrameStateListener.h"
#include "harness/Recorder.h"
#include <functional>
#include <map>
#include <string>
#include <utility>

/** Records what it hears as "name.Call" and does, once, what a test has set for that call. */
class FakeListener
{
public:
    explicit FakeListener(std::string name) : mName(std::move(name)) {}

    /** What to do inside the next call of that name. */
    std::map<std::string, std::function<void()>> mReactions;

protected:
    void Hear(const char* call)
    {
        std::function<void()> reaction;
        {
            const Allocations::Pause pause;
            Recorder::Add(mName + "." + call);
            reaction = std::exchange(mReactions[call], nullptr);
        }
        if (reaction)
        {
            reaction();
        }
    }

private:
    std::string mName;
};

class FakeStateListener : public QivoUi::NaviFrameStateListener, public FakeListener
{
public:
    explicit FakeStateListener(const std::string& name = "listener") : FakeListener(name) {}
    void OnItemResume() override { Hear("OnItemResume"); }
    void OnItemPause() override { Hear("OnItemPause"); }
    void OnItemTransitionFinished() override { Hear("OnItemTransitionFinished"); }
};

class FakeLowerListener : public QivoUi::NaviFrameLowerEventListener, public FakeListener
{
public:
    FakeLowerListener() : FakeListener("lower") {}
    void OnNaviFrameLowered() override { Hear("OnNaviFrameLowered"); }
};

class FakeTransitionListener : public QivoUi::NaviFramePopTransitionEventListener,
                               public FakeListener
{
public:
    explicit FakeTransitionListener(const std::string& name = "transition") : FakeListener(name) {}
    void OnPopTransitionFinished() override { Hear("OnPopTransitionFinished"); }
};

class FakePopListener : public QivoUi::NaviFramePopEventListener, public FakeListener
{
public:
    FakePopListener() : FakeListener("pop") {}
    bool OnViewPoped() override
    {
        Hear("OnViewPoped");
        return mIsAllowed;
    }

    bool mIsAllowed = true;
};

#endif
