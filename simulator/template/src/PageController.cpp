#include "PageController.h"

#include "PageView.h"

void PageController::Initialize()
{
    mBaseViewPtr = std::make_shared<PageView>();
    mBaseViewPtr->CreateView();
}
