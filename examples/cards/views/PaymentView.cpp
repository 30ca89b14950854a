#include "views/PaymentView.h"

#include "common/util/StringUtil.h"
#include <Elementary.h>

namespace Cards
{

using QivoUi::StringUtil;

void PaymentView::SetTexts()
{
    const Payment& payment = mWallet.GetPayments()[mPayment];
    const std::string points = mWallet.GetPoints(payment);
    std::string number = StringUtil::StringReplace(Text("CARDS_NUMBER"), "%s",
                                                   StringUtil::IntToHexaStringBy8Bit(mPayment + 1));
    const std::string brought =
        points.empty() ? "" : StringUtil::StringReplace(Text("CARDS_POINTS"), "%s", points);
    if (!points.empty())
    {
        number += " · " + brought;
    }
    elm_object_part_text_set(GetLayout(), "amount", MoneyText(payment.cents).c_str());
    elm_object_part_text_set(GetLayout(), "name", mWallet.GetCards()[payment.card].name.c_str());
    elm_object_part_text_set(GetLayout(), "number", number.c_str());
    elm_object_part_text_set(GetLayout(), "points", brought.c_str());
    elm_object_part_text_set(GetLayout(), "label", Text("CARDS_DONE").c_str());
}

} // namespace Cards
