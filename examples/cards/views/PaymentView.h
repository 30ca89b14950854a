#ifndef CARDS_PAYMENTVIEW_H
#define CARDS_PAYMENTVIEW_H

#include "Wallet.h"
#include "views/ThemedView.h"

namespace Cards
{

/** A payment that was made. The part that is tapped is "done_button". */
class PaymentView : public ThemedView
{
public:
    /** @param payment the index of a payment */
    PaymentView(const Wallet& wallet, int payment)
        : ThemedView("cards/payment"), mWallet(wallet), mPayment(payment)
    {
    }

protected:
    void SetTexts() override;

private:
    const Wallet& mWallet;
    int mPayment;
};

} // namespace Cards

#endif
