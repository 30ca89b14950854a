#include "controllers/ReceiptController.h"

#include "common/NaviFrame.h"

namespace Cards
{

using QivoUi::NaviFrame;

std::shared_ptr<ThemedView> ReceiptController::MakeView()
{
    return std::make_shared<PaymentView>(mWallet, mPayment);
}

void ReceiptController::OnItemTransitionFinished()
{
    // Other transitions may be told here as well.
    if (!mIsAlone)
    {
        mIsAlone = true;
        mPopHandlerPtr->DeleteBetweenNaviFrameItem(GetHome());
    }
}

void ReceiptController::OnTapped(const std::string& /*part*/, int /*index*/)
{
    if (mIsAsked)
    {
        mPopHandlerPtr->Pop(true, this);
        return;
    }
    NaviFrame::GetInstance()->PopTopItem();
}

void ReceiptController::OnPopTransitionFinished()
{
    NaviFrame::GetInstance()->TriggerToAppPaused();
}

} // namespace Cards
