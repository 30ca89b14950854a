#ifndef CARDS_PAYCONTROLLER_H
#define CARDS_PAYCONTROLLER_H

#include "Wallet.h"
#include "controllers/ScreenController.h"
#include "views/PayView.h"
#include <Ecore.h>

namespace Cards
{

/**
 * A payment: waits for the till, pays, and ends by itself with the payment's screen.
 *
 * While it waits, the back key leaves it, and so does the application's leaving the foreground:
 * nothing is paid unseen. While it pays, it refuses every pop.
 */
class PayController : public ScreenController
{
public:
    /** @param isAsked another application has asked for the payment, and waits behind this one */
    PayController(Wallet& wallet, Payment payment, bool isAsked)
        : mWallet(wallet), mPayment(payment), mIsAsked(isAsked)
    {
    }

    /** The payment that waits or pays; null when there is none. */
    static PayController* GetOpen() { return sOpenPayment; }

    /** Gives a payment that waits up, as the back key does. */
    void Cancel();

    void Initialize() override;
    void DeInitialize() override;
    void OnViewBackEvent() override;
    bool OnViewPopEvent() override;
    void OnItemPause() override;

protected:
    std::shared_ptr<ThemedView> MakeView() override;

private:
    static Eina_Bool STillReachedCB(void* data);
    static Eina_Bool SPaidCB(void* data);

    static PayController* sOpenPayment;

    Wallet& mWallet;
    Payment mPayment;
    bool mIsAsked;
    bool mIsSending = false;
    bool mIsPaid = false;
    Ecore_Timer* mTimer = nullptr;
    std::shared_ptr<PayView> mView;
};

} // namespace Cards

#endif
