#include "views/PayView.h"

#include "Wallet.h"
#include <Elementary.h>

namespace Cards
{

void PayView::ShowSending()
{
    mIsSending = true;
    elm_layout_signal_emit(GetLayout(), "sending", "cards");
    SetTexts();
}

void PayView::SetTexts()
{
    elm_object_part_text_set(GetLayout(), "amount", MoneyText(mCents).c_str());
    elm_object_part_text_set(GetLayout(), "hint",
                             Text(mIsSending ? "CARDS_SENDING" : "CARDS_HOLD").c_str());
}

} // namespace Cards
