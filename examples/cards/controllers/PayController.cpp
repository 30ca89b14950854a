#include "controllers/PayController.h"

#include "common/Log.h"
#include "common/NaviFrame.h"
#include "controllers/ReceiptController.h"

namespace Cards
{

namespace
{

// There is no till here: these take the place of one.
constexpr double kWayToTheTillS = 3;
constexpr double kSendingS = 1.5;

} // namespace

PayController* PayController::sOpenPayment = nullptr;

std::shared_ptr<ThemedView> PayController::MakeView()
{
    mView = std::make_shared<PayView>(mPayment.cents);
    return mView;
}

void PayController::Initialize()
{
    ScreenController::Initialize();
    mTimer = ecore_timer_add(kWayToTheTillS, STillReachedCB, this);
    sOpenPayment = this;
}

void PayController::DeInitialize()
{
    if (mTimer)
    {
        ecore_timer_del(mTimer);
        mTimer = nullptr;
    }
    sOpenPayment = nullptr;
    ScreenController::DeInitialize();
}

Eina_Bool PayController::STillReachedCB(void* data)
{
    auto* pThis = static_cast<PayController*>(data);
    pThis->mIsSending = true;
    QIVO_LOG_INFO("paying : %s", MoneyText(pThis->mPayment.cents).c_str());
    pThis->mView->ShowSending();
    pThis->mTimer = ecore_timer_add(kSendingS, SPaidCB, pThis);
    return ECORE_CALLBACK_CANCEL;
}

Eina_Bool PayController::SPaidCB(void* data)
{
    auto* pThis = static_cast<PayController*>(data);
    pThis->mTimer = nullptr;
    pThis->mIsPaid = true;
    const int payment = pThis->mWallet.Pay(pThis->mPayment.card, pThis->mPayment.cents);
    QIVO_LOG_INFO("paid : %s", MoneyText(pThis->mPayment.cents).c_str());
    Open<ReceiptController>(true, pThis->mWallet, payment, pThis->mIsAsked);
    return ECORE_CALLBACK_CANCEL;
}

// Asked before the pop, for one that is refused would leave its end to a later transition.
void PayController::OnViewBackEvent()
{
    if (OnViewPopEvent())
    {
        ScreenController::OnViewBackEvent();
    }
}

bool PayController::OnViewPopEvent()
{
    if (mIsSending)
    {
        QIVO_LOG_INFO("a payment that is under way is not left");
    }
    return !mIsSending;
}

// At once: a pop would be lost while the screen's own push is moving.
void PayController::Cancel()
{
    if (OnViewPopEvent())
    {
        QivoUi::NaviFrame::GetInstance()->DeleteTopItem();
    }
}

void PayController::OnItemPause()
{
    // Also told when the payment's own screen covers this one.
    if (!mIsSending)
    {
        mPopHandlerPtr->DeleteItem();
    }
}

} // namespace Cards
