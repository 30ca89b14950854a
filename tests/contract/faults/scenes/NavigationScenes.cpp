#include "faults/scenes/FrameStage.h"

using QivoUi::NaviFrame;

namespace
{

void GivenThreeScreens(FrameCast& cast)
{
    cast.Push(&cast.mBelow);
    cast.Push();
    cast.Push(&cast.mTop);
}

void GivenTwoScreens(FrameCast& cast)
{
    cast.Push(&cast.mBelow);
    cast.PushHandle(&cast.mTop)->mPopEventListener = &cast.mPop;
}

void GivenFourScreens(FrameCast& cast)
{
    GivenThreeScreens(cast);
    cast.Push();
}

void GivenARecord(FrameCast& cast)
{
    cast.mRecord = cast.MakeRecord(&cast.mTop);
    cast.mRecord->mTitle = "Title";
}

void GivenARecordAndAScreen(FrameCast& cast)
{
    cast.Push(&cast.mBelow);
    GivenARecord(cast);
}

// The handle is kept where keeping it allocates nothing.
void PushAnimated(FrameCast& cast)
{
    cast.mFrame->PushNaviframeItem(cast.mRecord, true);
}

std::vector<Scene> PushScenes()
{
    return {
        FrameScene(
            "making the frame", [](FrameCast& cast) { cast.mFrame->mNaviFrame = nullptr; },
            [](FrameCast& cast) { cast.mFrame->CreateNaviFrame(cast.mLayout); }),
        FrameScene("pushing the first screen", GivenARecord, PushAnimated),
        FrameScene("pushing a later screen", GivenARecordAndAScreen, PushAnimated),
        FrameScene("inserting a later screen", GivenARecordAndAScreen,
                   [](FrameCast& cast) { cast.mFrame->PushNaviframeItem(cast.mRecord, false); }),
        FrameScene(
            "the end of a push",
            [](FrameCast& cast)
            {
                cast.Push(&cast.mBelow);
                cast.PushAnimated(&cast.mTop);
            },
            [](FrameCast& cast) { cast.EndTransition(); }),
    };
}

std::vector<Scene> PopScenes()
{
    return {
        FrameScene("popping with a transition", GivenTwoScreens,
                   [](FrameCast& cast) { cast.mHandles.back()->Pop(true, &cast.mTransition); }),
        FrameScene("popping without a transition", GivenTwoScreens,
                   [](FrameCast& cast) { cast.mHandles.back()->Pop(false, &cast.mTransition); }),
        FrameScene(
            "popping the only screen", [](FrameCast& cast) { cast.Push(&cast.mTop); },
            [](FrameCast& cast)
            {
                cast.mFrame->mNaviFrmaeLowerEventListener = &cast.mLower;
                cast.mHandles.back()->Pop(true, nullptr);
            }),
        FrameScene(
            "the end of a pop",
            [](FrameCast& cast)
            {
                GivenTwoScreens(cast);
                cast.mHandles.back()->Pop(true, &cast.mTransition);
            },
            [](FrameCast& cast) { cast.EndTransition(); }),
        FrameScene("popping to a screen", GivenThreeScreens,
                   [](FrameCast& cast) { cast.mHandles.front()->PopTo(); }),
        FrameScene("popping whatever is on top", GivenTwoScreens,
                   [](FrameCast& cast) { cast.mFrame->PopTopItem(); }),
    };
}

std::vector<Scene> DeleteScenes()
{
    return {
        FrameScene("deleting a screen", GivenTwoScreens,
                   [](FrameCast& cast) { cast.mHandles.front()->DeleteItem(); }),
        FrameScene("deleting the top screen", GivenTwoScreens,
                   [](FrameCast& cast) { cast.mFrame->DeleteTopItem(); }),
        FrameScene("deleting the screens above", GivenThreeScreens,
                   [](FrameCast& cast) { cast.mHandles.front()->DeleteAboveNaviFrameItem(); }),
        FrameScene("deleting the screens between", GivenFourScreens,
                   [](FrameCast& cast)
                   { cast.mHandles.back()->DeleteBetweenNaviFrameItem(cast.mHandles.front()); }),
        FrameScene("asking whether the stack is empty", GivenTwoScreens,
                   [](FrameCast& cast)
                   { Recorder::Add(cast.mFrame->IsNaviFrameEmpty() ? "empty" : "not empty"); }),
        FrameScene("going to the background", nullptr,
                   [](FrameCast& cast) { cast.mFrame->TriggerToAppPaused(); }),
        FrameScene("pause and resume", GivenTwoScreens,
                   [](FrameCast& cast)
                   {
                       cast.mFrame->OnAppPause();
                       cast.mFrame->OnAppResume();
                   }),
        FrameScene("destroying the frame", GivenTwoScreens,
                   [](FrameCast& /*cast*/) { NaviFrame::Destroy(); }),
        FrameScene(
            "a deletion after the frame's end",
            [](FrameCast& cast)
            {
                GivenTwoScreens(cast);
                NaviFrame::Destroy();
            },
            [](FrameCast& cast) { elm_object_item_del(cast.mHandles.back()->mNaviFrameItem); }),
        FrameScene("releasing a handle", GivenTwoScreens,
                   [](FrameCast& cast) { cast.mHandles.pop_back(); }),
    };
}

} // namespace

std::vector<Scene> NavigationScenes()
{
    std::vector<Scene> scenes;
    for (const auto& group : {PushScenes(), PopScenes(), DeleteScenes()})
    {
        scenes.insert(scenes.end(), group.begin(), group.end());
    }
    return scenes;
}
