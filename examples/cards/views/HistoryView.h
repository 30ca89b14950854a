#ifndef CARDS_HISTORYVIEW_H
#define CARDS_HISTORYVIEW_H

#include "Wallet.h"
#include "views/ThemedView.h"

namespace Cards
{

/** All payments, the newest first. The part that is tapped is "row", with the payment's index. */
class HistoryView : public ThemedView
{
public:
    explicit HistoryView(const Wallet& wallet) : ThemedView("cards/history"), mWallet(wallet) {}

    /** What the bezel turns; deleted with the layout. */
    Evas_Object* GetCircleScroller() const { return mCircleScroller; }

protected:
    void Fill() override;
    void SetTexts() override;

private:
    const Wallet& mWallet;
    Evas_Object* mHeading = nullptr;
    Evas_Object* mEmpty = nullptr;
    Evas_Object* mCircleScroller = nullptr;
};

} // namespace Cards

#endif
