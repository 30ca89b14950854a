#ifndef CARDS_CARDCONTROLLER_H
#define CARDS_CARDCONTROLLER_H

#include "controllers/ScreenController.h"
#include "views/CardView.h"

namespace Cards
{

/** One card: the bezel sets the amount, a tap pays it. */
class CardController : public ScreenController
{
public:
    CardController(Wallet& wallet, int card) : mWallet(wallet), mCard(card) {}

    void Initialize() override;
    void OnRotaryDetent(int step, unsigned int timeStamp) override;
    void OnTapped(const std::string& part, int index) override;

protected:
    std::shared_ptr<ThemedView> MakeView() override;

private:
    Wallet& mWallet;
    int mCard;
    long long mCents = 350;
    std::shared_ptr<CardView> mView;
};

} // namespace Cards

#endif
