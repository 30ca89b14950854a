#ifndef CARDS_PAYMENTCONTROLLER_H
#define CARDS_PAYMENTCONTROLLER_H

#include "controllers/ScreenController.h"
#include "views/PaymentView.h"

namespace Cards
{

/**
 * A payment of the history. The bezel turns to the payments before and after it, without a
 * transition: each older one is a screen above the newer one.
 */
class PaymentController : public ScreenController
{
public:
    /**
     * @param payment the index of a payment
     * @param history the handle of the screen below; empty when that has gone
     * @param depth how many payments lie between this screen and the history
     */
    PaymentController(const Wallet& wallet, int payment,
                      std::weak_ptr<QivoUi::NaviFrameItemPopHandler> history, int depth)
        : mWallet(wallet), mPayment(payment), mHistory(std::move(history)), mDepth(depth)
    {
    }

    void OnRotaryDetent(int step, unsigned int timeStamp) override;

    /** Back to the cards, over all screens. */
    void OnTapped(const std::string& part, int index) override;

    /** Back to the history, over all payments. */
    void OnViewBackEvent() override;

protected:
    std::shared_ptr<ThemedView> MakeView() override;

private:
    const Wallet& mWallet;
    int mPayment;
    std::weak_ptr<QivoUi::NaviFrameItemPopHandler> mHistory;
    int mDepth;
};

} // namespace Cards

#endif
