#include "ScreenController.h"

#include <Ecore.h>

std::list<std::shared_ptr<ScreenController>> ScreenController::sOpen;

void ScreenController::DeInitialize()
{
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
