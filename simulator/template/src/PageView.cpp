#include "PageView.h"

#include "Theme.h"
#include "common/RotaryEventManager.h"
#include "common/util/ImageUtil.h"
#include <Elementary.h>
#include <efl_extension.h>

using QivoUi::ImageUtil;
using QivoUi::NaviFrameItemData;
using QivoUi::RotaryEventManager;

std::shared_ptr<NaviFrameItemData> PageView::CreateViewImpl(Evas_Object* parent)
{
    Evas_Object* screen = Theme::MakeLayout(parent, "screen");
    Evas_Object* box = MakeScrolledBox(screen);
    mPage = Theme::MakeLayout(box, "page");
    elm_object_part_content_set(
        mPage, "picture", ImageUtil::MakeImageObjectWithEdje(mPage, Theme::File(), "picture", ""));
    OnLanguageChanged();
    elm_box_pack_end(box, mPage);

    auto data = std::make_shared<NaviFrameItemData>();
    data->mViewLayout = screen;
    return data;
}

// The bezel turns the circle scroller, until another screen takes the bezel.
Evas_Object* PageView::MakeScrolledBox(Evas_Object* screen)
{
    Evas_Object* scroller = elm_scroller_add(screen);
    elm_object_style_set(scroller, "effect");
    elm_object_scroll_lock_x_set(scroller, EINA_TRUE);
    elm_object_part_content_set(screen, "scroller", scroller);
    evas_object_show(scroller);
    Evas_Object* box = elm_box_add(scroller);
    elm_object_content_set(scroller, box);
    evas_object_show(box);

    Evas_Object* circle =
        eext_circle_object_scroller_add(scroller, RotaryEventManager::GetCircleSurface());
    eext_circle_object_scroller_policy_set(circle, ELM_SCROLLER_POLICY_OFF, ELM_SCROLLER_POLICY_ON);
    RotaryEventManager::GetInstance()->ActivateRotateElementaryWidget(circle);
    return box;
}

void PageView::OnLanguageChanged()
{
    elm_object_part_text_set(mPage, "text", Theme::Text("IDS_TEXT").c_str());
}
