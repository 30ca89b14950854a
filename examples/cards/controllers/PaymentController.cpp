#include "controllers/PaymentController.h"

namespace Cards
{

std::shared_ptr<ThemedView> PaymentController::MakeView()
{
    return std::make_shared<PaymentView>(mWallet, mPayment);
}

void PaymentController::OnRotaryDetent(int step, unsigned int /*timeStamp*/)
{
    if (step > 0 && mPayment > 0)
    {
        Open<PaymentController>(false, mWallet, mPayment - 1, mHistory, mDepth + 1);
    }
    else if (step < 0 && mDepth > 0)
    {
        mPopHandlerPtr->DeleteItem();
    }
}

void PaymentController::OnTapped(const std::string& /*part*/, int /*index*/)
{
    GetHome()->PopTo();
}

void PaymentController::OnViewBackEvent()
{
    const Handle history = mHistory.lock();
    if (mDepth > 0 && history)
    {
        mPopHandlerPtr->DeleteBetweenNaviFrameItem(history);
        mDepth = 0;
    }
    ScreenController::OnViewBackEvent();
}

} // namespace Cards
