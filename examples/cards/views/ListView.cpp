#include "views/ListView.h"

#include "common/RotaryEventManager.h"
#include "common/util/CommonUtil.h"
#include "common/util/ImageUtil.h"
#include <Elementary.h>
#include <algorithm>
#include <efl_extension.h>

namespace Cards
{

using QivoUi::CommonUtil;
using QivoUi::ImageUtil;
using QivoUi::RotaryEventManager;

namespace
{

constexpr int kNone = -1;

} // namespace

void ListView::Fill()
{
    Evas_Object* box = MakeScrolledBox(&mScroller, "default");
    elm_box_pack_end(box, MakeLayout(box, "cards/pad", 0));
    for (const Card& card : mWallet.GetCards())
    {
        FillCard(AddPage(box, "cards/card", static_cast<int>(mPages.size())), card);
    }
    AddPage(box, "cards/action", 0);
    AddPage(box, "cards/action", 1);
    elm_box_pack_end(box, MakeLayout(box, "cards/pad", 0));

    evas_object_event_callback_add(mPages.front(), EVAS_CALLBACK_RESIZE, SResizedCB, this);
    evas_object_smart_callback_add(mScroller, "scroll,drag,start", SDraggedCB, this);
    SetBalances();
    MakeArc();
}

Evas_Object* ListView::AddPage(Evas_Object* box, const char* group, int index)
{
    Evas_Object* page = MakeLayout(box, group, index);
    elm_box_pack_end(box, page);
    mPages.push_back(page);
    return page;
}

void ListView::FillCard(Evas_Object* page, const Card& card)
{
    elm_object_part_text_set(page, "name", card.name.c_str());
    elm_object_part_text_set(page, "number", ("• " + card.number).c_str());
    Evas_Object* face = ImageUtil::MakeImageObjectFromFile(
        page, CommonUtil::GetResourcePath("images/card.png"), card.colorCode);
    elm_image_aspect_fixed_set(face, EINA_FALSE);
    elm_object_part_content_set(page, "face", face);
    elm_object_part_content_set(
        page, "waves",
        ImageUtil::MakeImageObjectWithEdje(page, CommonUtil::GetResourcePath("edje/cards.edj"),
                                           "cards/waves", "cards/text"));
}

// The arc at the screen's edge. The pages are turned by the controller, so it is not activated.
void ListView::MakeArc()
{
    Evas_Object* arc =
        eext_circle_object_scroller_add(mScroller, RotaryEventManager::GetCircleSurface());
    eext_circle_object_scroller_policy_set(arc, ELM_SCROLLER_POLICY_OFF, ELM_SCROLLER_POLICY_ON);
}

void ListView::SetBalances()
{
    for (size_t i = 0; i < mWallet.GetCards().size(); ++i)
    {
        elm_object_part_text_set(mPages[i], "balance",
                                 MoneyText(mWallet.GetCards()[i].cents).c_str());
    }
}

void ListView::SetTexts()
{
    const size_t cards = mWallet.GetCards().size();
    elm_object_part_text_set(mPages[cards], "label", Text("CARDS_HISTORY").c_str());
    elm_object_part_text_set(mPages[cards + 1], "label", Text("CARDS_GUIDE").c_str());
}

void ListView::Turn(int pages)
{
    const int from = mTarget == kNone ? GetNearestPage() : mTarget;
    mTarget = std::clamp(from + pages, 0, static_cast<int>(mPages.size()) - 1);
    int width = 0;
    int height = 0;
    elm_scroller_region_get(mScroller, nullptr, nullptr, &width, &height);
    elm_scroller_region_bring_in(mScroller, 0, mTarget * GetPageHeight(), width, height);
}

int ListView::GetPageHeight() const
{
    int height = 0;
    evas_object_geometry_get(mPages.front(), nullptr, nullptr, nullptr, &height);
    return height;
}

int ListView::GetNearestPage() const
{
    const int height = GetPageHeight();
    int y = 0;
    elm_scroller_region_get(mScroller, nullptr, &y, nullptr, nullptr);
    return height > 0 ? (y + height / 2) / height : 0;
}

void ListView::SDraggedCB(void* data, Evas_Object* /*object*/, void* /*eventInfo*/)
{
    static_cast<ListView*>(data)->mTarget = kNone;
}

// With the text size a page's height changes, and the same page is to stay in the middle.
void ListView::SResizedCB(void* data, Evas* /*canvas*/, Evas_Object* /*page*/, void* /*eventInfo*/)
{
    auto* pThis = static_cast<ListView*>(data);
    elm_scroller_page_size_set(pThis->mScroller, 0, pThis->GetPageHeight());
    pThis->Turn(0);
}

} // namespace Cards
