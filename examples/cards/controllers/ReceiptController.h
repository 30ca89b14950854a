#ifndef CARDS_RECEIPTCONTROLLER_H
#define CARDS_RECEIPTCONTROLLER_H

#include "controllers/ScreenController.h"
#include "views/PaymentView.h"

namespace Cards
{

/**
 * The payment that was just made. What led to it is taken off the stack, so that nobody comes back
 * to a payment that is over: the list is the next screen.
 */
class ReceiptController : public ScreenController,
                          public QivoUi::NaviFramePopTransitionEventListener
{
public:
    /** @param isAsked another application waits behind this one, and comes back at the end */
    ReceiptController(const Wallet& wallet, int payment, bool isAsked)
        : mWallet(wallet), mPayment(payment), mIsAsked(isAsked)
    {
    }

    void OnTapped(const std::string& part, int index) override;
    void OnItemTransitionFinished() override;
    void OnPopTransitionFinished() override;

protected:
    std::shared_ptr<ThemedView> MakeView() override;

private:
    const Wallet& mWallet;
    int mPayment;
    bool mIsAsked;
    bool mIsAlone = false;
};

} // namespace Cards

#endif
