#ifndef CARDS_PAYVIEW_H
#define CARDS_PAYVIEW_H

#include "views/ThemedView.h"

namespace Cards
{

/** Waits for the till, and then pays. */
class PayView : public ThemedView
{
public:
    explicit PayView(long long cents) : ThemedView("cards/pay"), mCents(cents) {}

    /** The till was reached: the rings stand still. */
    void ShowSending();

protected:
    void SetTexts() override;

private:
    long long mCents;
    bool mIsSending = false;
};

} // namespace Cards

#endif
