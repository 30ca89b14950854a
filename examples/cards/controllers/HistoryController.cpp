#include "controllers/HistoryController.h"

#include "common/RotaryEventManager.h"
#include "controllers/PaymentController.h"

namespace Cards
{

using QivoUi::RotaryEventManager;

std::shared_ptr<ThemedView> HistoryController::MakeView()
{
    mView = std::make_shared<HistoryView>(mWallet);
    return mView;
}

void HistoryController::TakeBezel()
{
    RotaryEventManager::GetInstance()->ActivateRotateElementaryWidget(mView->GetCircleScroller());
}

void HistoryController::LeaveBezel()
{
    RotaryEventManager::GetInstance()->DeActivateRotateElementaryWidget(mView->GetCircleScroller());
}

void HistoryController::OnTapped(const std::string& /*part*/, int index)
{
    Open<PaymentController>(true, mWallet, index, mPopHandlerPtr, 0);
}

} // namespace Cards
