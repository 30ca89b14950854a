#include "views/ThemedView.h"

#include "common/NaviFrame.h"
#include "common/util/CommonUtil.h"
#include <Elementary.h>
#include <libintl.h>

namespace Cards
{

using QivoUi::CommonUtil;
using QivoUi::NaviFrame;
using QivoUi::NaviFrameItemData;

namespace
{

constexpr const char* kIndex = "index";

// The toolkit has no way back from a content to its item.
Elm_Object_Item* FindItem(const Evas_Object* content)
{
    Elm_Object_Item* found = nullptr;
    Eina_List* items = elm_naviframe_items_get(NaviFrame::GetInstance()->GetParent());
    for (Eina_List* node = items; node; node = eina_list_next(node))
    {
        auto* item = static_cast<Elm_Object_Item*>(eina_list_data_get(node));
        if (elm_object_item_content_get(item) == content)
        {
            found = item;
        }
    }
    eina_list_free(items);
    return found;
}

int IndexOf(const Evas_Object* layout)
{
    return static_cast<int>(reinterpret_cast<intptr_t>(evas_object_data_get(layout, kIndex)));
}

} // namespace

std::string Text(const char* id)
{
    return dgettext("cards", id);
}

std::shared_ptr<NaviFrameItemData> ThemedView::CreateViewImpl(Evas_Object* parent)
{
    mLayout = MakeLayout(parent, mGroup, 0);
    Fill();
    SetTexts();
    auto data = std::make_shared<NaviFrameItemData>();
    data->mViewLayout = mLayout;
    data->mTitle = GetTitle();
    data->mStateListener = mStateListener;
    return data;
}

void ThemedView::OnLanguageChanged()
{
    SetTexts();
    // The title was copied when the screen was pushed.
    const std::string title = GetTitle();
    Elm_Object_Item* item = title.empty() ? nullptr : FindItem(mLayout);
    if (item)
    {
        elm_object_item_text_set(item, title.c_str());
    }
}

Evas_Object* ThemedView::MakeLayout(Evas_Object* parent, const char* group, int index)
{
    Evas_Object* layout = elm_layout_add(parent);
    elm_layout_file_set(layout, CommonUtil::GetResourcePath("edje/cards.edj").c_str(), group);
    evas_object_size_hint_weight_set(layout, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    evas_object_data_set(layout, kIndex, reinterpret_cast<void*>(static_cast<intptr_t>(index)));
    elm_layout_signal_callback_add(layout, "tapped", "*", STappedCB, this);
    evas_object_show(layout);
    return layout;
}

Evas_Object* ThemedView::MakeScrolledBox(Evas_Object** scroller, const char* style)
{
    *scroller = elm_scroller_add(mLayout);
    elm_object_style_set(*scroller, style);
    elm_scroller_policy_set(*scroller, ELM_SCROLLER_POLICY_OFF, ELM_SCROLLER_POLICY_OFF);
    elm_object_scroll_lock_x_set(*scroller, EINA_TRUE);
    elm_object_part_content_set(mLayout, "scroller", *scroller);
    evas_object_show(*scroller);
    Evas_Object* box = elm_box_add(*scroller);
    elm_object_content_set(*scroller, box);
    evas_object_show(box);
    return box;
}

void ThemedView::STappedCB(void* data, Evas_Object* layout, const char* /*signal*/,
                           const char* part)
{
    auto* pThis = static_cast<ThemedView*>(data);
    // A second tap may come when the first one has already pushed a screen.
    Evas_Object* frame = NaviFrame::GetInstance()->GetParent();
    Elm_Object_Item* top = elm_naviframe_top_item_get(frame);
    if (pThis->mTapListener && elm_object_item_content_get(top) == pThis->mLayout)
    {
        pThis->mTapListener->OnTapped(part, IndexOf(layout));
    }
}

} // namespace Cards
