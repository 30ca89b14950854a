#ifndef CARDS_CARDVIEW_H
#define CARDS_CARDVIEW_H

#include "Wallet.h"
#include "views/ThemedView.h"

namespace Cards
{

/** One card: what is on it, and the amount to be paid. The part that is tapped is "pay". */
class CardView : public ThemedView
{
public:
    explicit CardView(const Card& card) : ThemedView("cards/detail"), mCard(card) {}

    /** Shows the amount, in red when the card cannot pay it. */
    void ShowAmount(long long cents);

protected:
    std::string GetTitle() const override { return mCard.name; }
    void SetTexts() override;

private:
    const Card& mCard;
    long long mCents = 0;
};

} // namespace Cards

#endif
