#include "views/HistoryView.h"

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
    elm_box_align_set(box, 0.5, 0.0);
    elm_box_pack_end(box, MakeLayout(box, "cards/row_pad", 0));
    mHeading = MakeLayout(box, "cards/heading", 0);
    elm_box_pack_end(box, mHeading);
    mEmpty = nullptr;
    const auto& payments = mWallet.GetPayments();
    for (int i = static_cast<int>(payments.size()) - 1; i >= 0; --i)
    {
        Evas_Object* row = MakeLayout(box, "cards/row", i);
        const std::string payment =
            mWallet.GetCards()[payments[i].card].name + "<br>" + MoneyText(payments[i].cents);
        elm_object_part_text_set(row, "payment", payment.c_str());
        elm_box_pack_end(box, row);
    }
    if (payments.empty())
    {
        mEmpty = MakeLayout(box, "cards/heading", 0);
        elm_box_pack_end(box, mEmpty);
    }
    elm_box_pack_end(box, MakeLayout(box, "cards/row_pad", 0));
    mCircleScroller =
        eext_circle_object_scroller_add(scroller, RotaryEventManager::GetCircleSurface());
}

void HistoryView::SetTexts()
{
    elm_object_part_text_set(mHeading, "heading", Text("CARDS_HISTORY").c_str());
    if (mEmpty)
        elm_object_part_text_set(mEmpty, "heading", Text("CARDS_EMPTY").c_str());
}

} // namespace Cards
