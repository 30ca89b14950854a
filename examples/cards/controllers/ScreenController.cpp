#include "controllers/ScreenController.h"

#include "common/RotaryEventManager.h"
#include <Ecore.h>

namespace Cards
{

using QivoUi::RotaryEventManager;

std::list<std::shared_ptr<ScreenController>> ScreenController::sOpen;

void ScreenController::Initialize()
{
    std::shared_ptr<ThemedView> view = MakeView();
    view->mTapListener = this;
    view->mStateListener = this;
    mBaseViewPtr = view;
    view->CreateView();
    TakeBezel();
}

void ScreenController::DeInitialize()
{
    LeaveBezel();
    ecore_job_add(SReleaseCB, this);
}

void ScreenController::SReleaseCB(void* data)
{
    sOpen.remove_if([data](const auto& controller) { return controller.get() == data; });
}

void ScreenController::ReleaseAll()
{
    sOpen.clear();
}

ScreenController::Handle ScreenController::GetHome()
{
    return sOpen.front()->mPopHandlerPtr;
}

void ScreenController::TakeBezel()
{
    RotaryEventManager::GetInstance()->RegisterEventListener(this);
}

void ScreenController::LeaveBezel()
{
    RotaryEventManager::GetInstance()->UnRegisterEventListener(this);
}

Evas_Object* ScreenController::GetRotaryViewObject()
{
    return mBaseViewPtr->GetViewLayout();
}

} // namespace Cards
