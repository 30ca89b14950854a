#include "views/CardView.h"

#include "common/util/StringUtil.h"
#include <Elementary.h>

namespace Cards
{

using QivoUi::StringUtil;

void CardView::ShowAmount(long long cents)
{
    mCents = cents;
    SetTexts();
}

void CardView::SetTexts()
{
    const bool isEnough = mCents <= mCard.cents;
    const std::string balance =
        StringUtil::StringReplace(Text("CARDS_BALANCE"), "%s", MoneyText(mCard.cents));
    const std::string amount = MoneyText(mCents);
    elm_object_part_text_set(GetLayout(), "balance", balance.c_str());
    elm_object_part_text_set(GetLayout(), "amount", isEnough ? amount.c_str() : "");
    elm_object_part_text_set(GetLayout(), "warning", isEnough ? "" : amount.c_str());
    elm_object_part_text_set(GetLayout(), "hint",
                             Text(isEnough ? "CARDS_TURN" : "CARDS_TOO_LITTLE").c_str());
    elm_object_part_text_set(GetLayout(), "label", Text("CARDS_PAY").c_str());
}

} // namespace Cards
