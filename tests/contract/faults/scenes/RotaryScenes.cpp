#include "faults/scenes/FrameStage.h"

using QivoUi::RotaryEventManager;

namespace
{

void GivenObjects(FrameCast& cast)
{
    for (const char* name : {"a", "b"})
    {
        cast.mObjects.push_back(cast.AddObject(std::string(name) + "View"));
        cast.mRotaryListeners.push_back(
            std::make_unique<FakeRotaryListener>(name, cast.mObjects.back()));
    }
}

void GivenListeners(FrameCast& cast)
{
    GivenObjects(cast);
    cast.mManager->RegisterEventListener(cast.mRotaryListeners[0].get());
    cast.mManager->RegisterEventListener(cast.mRotaryListeners[1].get());
}

void GivenWidgets(FrameCast& cast)
{
    GivenObjects(cast);
    cast.mManager->ActivateRotateElementaryWidget(cast.mObjects[0]);
    cast.mManager->ActivateRotateElementaryWidget(cast.mObjects[1]);
}

} // namespace

std::vector<Scene> RotaryScenes()
{
    return {
        FrameScene("making the circle surface", nullptr,
                   [](FrameCast& cast) { RotaryEventManager::CreateCircleSurface(cast.mWindow); }),
        FrameScene("registering a listener", GivenObjects,
                   [](FrameCast& cast)
                   { cast.mManager->RegisterEventListener(cast.mRotaryListeners[0].get()); }),
        FrameScene("unregistering a listener", GivenListeners,
                   [](FrameCast& cast)
                   { cast.mManager->UnRegisterEventListener(cast.mRotaryListeners[1].get()); }),
        FrameScene("activating a widget", GivenObjects,
                   [](FrameCast& cast)
                   { cast.mManager->ActivateRotateElementaryWidget(cast.mObjects[0]); }),
        FrameScene("deactivating a widget", GivenWidgets,
                   [](FrameCast& cast)
                   { cast.mManager->DeActivateRotateElementaryWidget(cast.mObjects[1]); }),
        FrameScene("a detent", GivenListeners,
                   [](FrameCast& cast)
                   { Platform::TurnBezel(cast.mObjects[0], EEXT_ROTARY_DIRECTION_CLOCKWISE, 7); }),
        FrameScene("the deletion of a listener's object", GivenListeners,
                   [](FrameCast& cast) { evas_object_del(cast.mObjects[1]); }),
        FrameScene("unsetting the rotary callback", GivenListeners,
                   [](FrameCast& cast) { cast.mManager->UnSetRotaryEventCB(cast.mObjects[1]); }),
        FrameScene("destroying the manager", GivenWidgets,
                   [](FrameCast& /*cast*/) { RotaryEventManager::Destroy(); }),
    };
}
