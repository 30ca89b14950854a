#include "HistoryView.h"

#include "common/RotaryEventManager.h"
#include <Elementary.h>
#include <efl_extension.h>

namespace Cards
{

using QivoUi::RotaryEventManager;

void HistoryView::Fill()
{
    Evas_Object* scroller = nullptr;
    Evas_Object* box = MakeScrolledBox(&scroller, "effect");
    const auto& payments = mWallet.GetPayments();
    for (int i = static_cast<int>(payments.size()) - 1; i >= 0; --i)
    {
        Evas_Object* row = MakeLayout(box, "cards/row", i);
        const std::string& name = mWallet.GetCards()[payments[i].card].name;
        elm_object_part_text_set(row, "name", name.c_str());
        elm_object_part_text_set(row, "amount", MoneyText(payments[i].cents).c_str());
        elm_box_pack_end(box, row);
    }
    elm_box_pack_end(box, MakeLayout(box, "cards/pad", 0));
    mCircleScroller =
        eext_circle_object_scroller_add(scroller, RotaryEventManager::GetCircleSurface());
}

void HistoryView::SetTexts()
{
    const bool isEmpty = mWallet.GetPayments().empty();
    elm_object_part_text_set(GetLayout(), "empty", isEmpty ? Text("CARDS_EMPTY").c_str() : "");
}

} // namespace Cards
