#include "walks/Model.h"

#include <algorithm>

using Recorder::Lines;

namespace
{

std::string Number(int number)
{
    return std::to_string(number);
}

} // namespace

Lines Model::Take(const Step& step)
{
    mLines.clear();
    if (step.kind <= Kind::RefusePops)
    {
        TakeOnScreen(step);
    }
    else if (step.kind <= Kind::UnregisterApp)
    {
        TakeOnApplication(step);
    }
    else
    {
        TakeOnBezel(step);
    }
    return mLines;
}

int Model::ScreenOf(unsigned number) const
{
    return mScreens.empty() ? -1 : static_cast<int>(number % mScreens.size());
}

void Model::Tell(int screen, const char* call)
{
    if (screen >= 0 && mScreens[screen].isMapped)
    {
        Log("screen" + Number(screen) + "." + call);
    }
}

void Model::TakeOnScreen(const Step& step)
{
    const int screen = ScreenOf(step.first);
    if (step.kind <= Kind::PushInserted)
    {
        Push(step.kind == Kind::PushAnimated, step);
        return;
    }
    if (step.kind == Kind::PopTop)
    {
        ToolkitPops();
        Log("info(PopTopItem) Pop Start");
        return;
    }
    if (step.kind == Kind::DeleteTop)
    {
        Delete(Top());
        return;
    }
    if (screen < 0 || !mScreens[screen].hasHandle)
    {
        return;
    }
    const bool isBound = mScreens[screen].isBound;
    switch (step.kind)
    {
    case Kind::PopAnimated:
    case Kind::PopAtOnce:
        Pop(screen, step.kind == Kind::PopAnimated, step.second % 3 == 0 ? -1 : screen);
        break;
    case Kind::PopTo:
        PopTo(screen);
        break;
    case Kind::DeleteItem:
        Delete(isBound ? screen : -1);
        break;
    case Kind::DeleteAbove:
        DeleteAbove(screen);
        break;
    case Kind::DeleteBetween:
        DeleteBetween(screen, ScreenOf(step.second));
        break;
    case Kind::ReleaseHandle:
        mScreens[screen].hasHandle = !isBound;
        break;
    default:
        mScreens[screen].refuses = !mScreens[screen].refuses;
    }
}

void Model::Push(bool animated, const Step& step)
{
    const int oldTop = Top();
    const int screen = static_cast<int>(mScreens.size());
    mScreens.emplace_back();
    if (oldTop >= 0 && animated)
    {
        Log("info(PushNaviframeItem) push animationStart");
        mTransitions += 'p';
        mScreens[screen].isMoving = true;
        mScreens[oldTop].isMoving = false;
    }
    if (!mIsPaused)
    {
        Tell(oldTop, "OnItemPause");
    }
    mStack.push_back(screen);
    mScreens[screen].isMapped = step.second % 4 != 0;
    Tell(screen, "OnItemResume");
}

// The toolkit pops the top item when its own transition has ended, which no walk waits for after a
// push, and when its handle consents. An item below which there is another
// dies with its transition, which no walk waits for; the last one dies at once.
bool Model::ToolkitPops()
{
    const int top = Top();
    if (top < 0 || mScreens[top].isMoving)
    {
        return false;
    }
    Screen& screen = mScreens[top];
    if (screen.hasHandle)
    {
        Log("screen" + Number(top) + ".OnViewPoped");
        if (screen.refuses)
        {
            return false;
        }
        screen.isBound = false;
    }
    if (mStack.size() == 1)
    {
        Delete(top);
        return true;
    }
    mStack.pop_back();
    return true;
}

void Model::Pop(int screen, bool animated, int listener)
{
    if (!mScreens[screen].isBound)
    {
        return;
    }
    if (screen != Top())
    {
        Log("error(PopItem) pop fail[[PopItem]naviFrameItem doesn't top item]");
    }
    else if (mStack.size() == 1)
    {
        Log("warn(PopItem) mNaviFrmaeLowerEventListener is NULL");
    }
    else if (!animated)
    {
        Delete(screen);
    }
    else
    {
        mPopListener = listener;
        mTransitions += 'o';
        ToolkitPops();
        Log("info(PopItem) pop animation start");
    }
}

void Model::PopTo(int screen)
{
    if (!mScreens[screen].isBound || screen == Top())
    {
        return;
    }
    while (mStack[mStack.size() - 2] != screen)
    {
        Delete(mStack[mStack.size() - 2]);
    }
    ToolkitPops();
    Log("info(PopToItem) pop to animation start");
}

void Model::Delete(int screen)
{
    if (screen < 0)
    {
        return;
    }
    mStack.erase(std::remove(mStack.begin(), mStack.end(), screen), mStack.end());
    mScreens[screen].isBound = false;
    if (!mScreens[screen].hasHandle)
    {
        return;
    }
    if (!mIsPaused)
    {
        Tell(Top(), "OnItemResume");
    }
    mScreens[screen].isMapped = false;
}

void Model::DeleteListed(const std::vector<int>& screens, const char* function)
{
    for (const int screen : screens)
    {
        Log(std::string("error(") + function + ") Delete naviframeItem item" + Number(screen));
        Delete(screen);
    }
}

void Model::DeleteAbove(int screen)
{
    if (!mScreens[screen].isBound)
    {
        Log("error(DeleteAboveNaviFrameItem) [Failed] Invalid NaviFrameItem");
        return;
    }
    const auto above = std::find(mStack.begin(), mStack.end(), screen) + 1;
    DeleteListed({above, mStack.end()}, "DeleteAboveItems");
}

void Model::DeleteBetween(int upper, int lower)
{
    if (!mScreens[upper].isBound || !mScreens[lower].isBound || !mScreens[lower].hasHandle ||
        upper <= lower)
    {
        return;
    }
    const auto begin = std::find(mStack.begin(), mStack.end(), lower) + 1;
    const auto end = std::find(mStack.begin(), mStack.end(), upper);
    if (begin == end)
    {
        Log("error(DeleteBetweenItems) Invalid deletedList");
    }
    DeleteListed({begin, end}, "DeleteBetweenItems");
}

// The toolkit calls the youngest callback first and takes the oldest of its kind away.
void Model::EndTransition()
{
    std::vector<std::size_t> gone;
    const std::string registered = mTransitions;
    for (std::size_t i = registered.size(); i-- > 0;)
    {
        if (std::count(gone.begin(), gone.end(), i) > 0)
        {
            continue;
        }
        const char kind = registered[i];
        if (kind == 'p')
        {
            Log("info(SNaviFrameTransitionFinishedCB) Animation Done");
            Tell(Top(), "OnItemTransitionFinished");
        }
        else if (mPopListener >= 0)
        {
            Log("screen" + Number(mPopListener) + ".OnPopTransitionFinished");
            mPopListener = -1;
        }
        for (std::size_t oldest = 0; oldest < registered.size(); ++oldest)
        {
            if (registered[oldest] == kind && std::count(gone.begin(), gone.end(), oldest) == 0)
            {
                gone.push_back(oldest);
                break;
            }
        }
    }
    mTransitions.clear();
    for (std::size_t i = 0; i < registered.size(); ++i)
    {
        if (std::count(gone.begin(), gone.end(), i) == 0)
        {
            mTransitions += registered[i];
        }
    }
}

void Model::TakeOnApplication(const Step& step)
{
    const int listener = static_cast<int>(step.first % 3);
    if (step.kind == Kind::EndTransition)
    {
        EndTransition();
        return;
    }
    if (step.kind == Kind::RegisterApp || step.kind == Kind::UnregisterApp)
    {
        mAppListeners.erase(std::remove(mAppListeners.begin(), mAppListeners.end(), listener),
                            mAppListeners.end());
        if (step.kind == Kind::RegisterApp)
        {
            mAppListeners.push_back(listener);
        }
        return;
    }
    const bool isPause = step.kind == Kind::Pause;
    for (const int told : mAppListeners)
    {
        if (told != 0)
        {
            Log("app" + Number(told) + (isPause ? ".OnAppPause" : ".OnAppResume"));
            continue;
        }
        mIsPaused = isPause;
        Tell(Top(), isPause ? "OnItemPause" : "OnItemResume");
    }
}

void Model::TakeOnBezel(const Step& step)
{
    const int object = static_cast<int>(step.first % kObjects);
    const auto withObject =
        std::find_if(mRecords.begin(), mRecords.end(),
                     [&](const Record& record) { return record.object == object; });
    const auto withListener = std::find_if(mRecords.begin(), mRecords.end(),
                                           [&](const Record& record)
                                           { return record.object == object && record.listens; });
    switch (step.kind)
    {
    case Kind::RegisterRotary:
        ++mCallbacks[object];
        Activate(object, true);
        break;
    case Kind::UnregisterRotary:
        if (withListener != mRecords.end())
        {
            Log("info(UnRegisterEventListener) object:object" + Number(object));
            mCallbacks[object] = std::max(0, mCallbacks[object] - 1);
            Deactivate(withListener - mRecords.begin());
        }
        break;
    case Kind::ActivateWidget:
        Activate(object, false);
        break;
    case Kind::DeactivateWidget:
        if (withObject != mRecords.end())
        {
            Deactivate(withObject - mRecords.begin());
        }
        else
        {
            Log("mark(DeActivateRotateEvent)");
        }
        break;
    case Kind::DeleteObject:
        DeleteObject(object);
        break;
    default:
        Detent(object, static_cast<int>(step.second % 2));
    }
}

void Model::Activate(int object, bool listens)
{
    mRecords.push_back({object, listens});
    Log("warn(ActivateRotateEvent) object :object" + Number(object));
}

void Model::Deactivate(std::size_t record)
{
    mRecords.erase(mRecords.begin() + static_cast<std::ptrdiff_t>(record));
    Log(mRecords.empty()
            ? "error(DeActivateRotateEvent) Initialize Rotary Activation"
            : "warn(DeActivateRotateEvent) object :object" + Number(mRecords.back().object));
    Log("mark(DeActivateRotateEvent)");
}

// Every record of the object goes with it, the oldest first.
void Model::DeleteObject(int object)
{
    for (std::size_t i = 0; i < mRecords.size();)
    {
        if (mRecords[i].object == object)
        {
            Deactivate(i);
        }
        else
        {
            ++i;
        }
    }
    mCallbacks[object] = 0;
}

void Model::Detent(int object, int direction)
{
    for (int i = 0; i < mCallbacks[object]; ++i)
    {
        if (mRecords.empty())
        {
            Log("warn(SRotaryEventCB) mRotaryEventDataList is empty");
        }
        else if (!mRecords.back().listens)
        {
            Log("warn(SRotaryEventCB) mEventListener is NULL");
        }
        else
        {
            Log("warn(SRotaryEventCB) Rotary direction: " + Number(direction));
            Log("bezel" + Number(mRecords.back().object) + ".OnRotaryDetent(" +
                (direction == 0 ? "1" : "-1") + ", 7)");
        }
    }
}
