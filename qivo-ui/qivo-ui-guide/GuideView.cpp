#include "qivo-ui-guide/GuideView.h"

#include "common/Log.h"
#include "common/RotaryEventManager.h"
#include "common/util/CommonUtil.h"
#include "common/util/ImageUtil.h"
#include "common/util/StringUtil.h"
#include <efl_extension.h>
#include <libintl.h>

namespace QivoUi
{

namespace
{

constexpr const char* kTextDomain = "qivo-guide-app";
constexpr const char* kHelpTextId = "MIDS_QIVOG_BODY_PRESS_N_HOLD_BACK_KEY_ON_ANY_SCREEN_ABB";
constexpr const char* kThemeFile = "edje/qivoui.edj";

} // namespace

std::shared_ptr<NaviFrameItemData> GuideView::CreateViewImpl(Evas_Object* parent)
{
    if (!parent)
    {
        QIVO_LOG_ERROR("[Failed] Invalid parent");
        return nullptr;
    }
    Evas_Object* layout = CreateLayout(parent);
    auto data = std::make_shared<NaviFrameItemData>();
    data->mViewLayout = layout;
    return data;
}

Evas_Object* GuideView::CreateLayout(Evas_Object* parent)
{
    Evas_Object* outerLayout = elm_layout_add(parent);
    if (!outerLayout)
    {
        QIVO_LOG_ERROR("elm_layout_add failed.");
        return nullptr;
    }
    const std::string themePath = CommonUtil::GetResourcePath(kThemeFile);
    elm_layout_file_set(outerLayout, themePath.c_str(), "tutorial/scroller");
    evas_object_size_hint_weight_set(outerLayout, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    evas_object_show(outerLayout);
    CreateScroller(outerLayout);
    ActivateCircleScroller();
    CreateBox();

    Evas_Object* page = elm_layout_add(mBox);
    if (!page)
    {
        QIVO_LOG_ERROR("elm_layout_add failed.");
        return nullptr;
    }
    mGuideLayout = page;
    elm_layout_file_set(page, themePath.c_str(), "tutorial/page/guide");
    FillPage(page);
    elm_box_pack_end(mBox, page);
    return outerLayout;
}

void GuideView::CreateScroller(Evas_Object* outerLayout)
{
    Evas_Object* scroller = elm_scroller_add(outerLayout);
    elm_object_style_set(scroller, "effect");
    elm_scroller_loop_set(scroller, EINA_FALSE, EINA_FALSE);
    evas_object_size_hint_weight_set(scroller, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    evas_object_size_hint_align_set(scroller, EVAS_HINT_FILL, EVAS_HINT_FILL);
    elm_object_scroll_lock_x_set(scroller, EINA_TRUE);
    elm_object_scroll_lock_y_set(scroller, EINA_FALSE);
    elm_object_part_content_set(outerLayout, "scroller", scroller);
    evas_object_smart_callback_add(scroller, "scroll", SOnScrollCB, this);
    evas_object_show(scroller);
    mScroller = scroller;
}

void GuideView::ActivateCircleScroller()
{
    // No circle surface is ever made here, so the circle scroller draws no bar of its own.
    Eext_Circle_Surface* surface = RotaryEventManager::GetInstance()->GetCircleSurface();
    Evas_Object* circleScroller = eext_circle_object_scroller_add(mScroller, surface);
    eext_circle_object_scroller_policy_set(circleScroller, ELM_SCROLLER_POLICY_OFF,
                                           ELM_SCROLLER_POLICY_OFF);
    RotaryEventManager::GetInstance()->ActivateRotateElementaryWidget(circleScroller);
}

void GuideView::CreateBox()
{
    Evas_Object* box = elm_box_add(mScroller);
    elm_box_horizontal_set(box, EINA_FALSE);
    elm_box_homogeneous_set(box, EINA_FALSE);
    elm_object_part_content_set(mScroller, nullptr, box);
    evas_object_show(box);
    mBox = box;
}

void GuideView::FillPage(Evas_Object* page)
{
    evas_object_size_hint_weight_set(page, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    evas_object_size_hint_align_set(page, EVAS_HINT_FILL, EVAS_HINT_FILL);
    evas_object_show(page);
    // The picture shows a watch, whose keys do not change sides with the language.
    elm_object_mirrored_automatic_set(page, EINA_FALSE);
    elm_object_mirrored_set(page, EINA_FALSE);
    Evas_Object* helpImage = ImageUtil::MakeImageObject(page, "pay_payment_help_image01.png", "");
    elm_object_part_content_set(page, "help_image", helpImage);
    Evas_Object* arrowImage = ImageUtil::MakeImageObject(page, "pay_homescreen_guide.png", "");
    elm_object_part_content_set(page, "arrow_image", arrowImage);
    SetArrowVisible(mIsArrowVisible);
    UpdateHelpText();
}

void GuideView::UpdateHelpText()
{
    // Deliberate: only the first line feed becomes a line break.
    std::string text = StringUtil::StringReplace(dgettext(kTextDomain, kHelpTextId), "\n", "<br>");
    if (text.find('&') == std::string::npos)
    {
        elm_object_part_text_set(mGuideLayout, "help_text", text.c_str());
        return;
    }
    // Deliberate: the conversion comes last and escapes the line break as well, and its buffer
    // is never released. Translators are told to write no ampersand.
    elm_object_part_text_set(mGuideLayout, "help_text", elm_entry_utf8_to_markup(text.c_str()));
}

void GuideView::SetArrowVisible(bool visible)
{
    mIsArrowVisible = visible;
    elm_object_signal_emit(mGuideLayout, visible ? "show_arrow" : "hide_arrow", "*");
}

void GuideView::SOnScrollCB(void* data, Evas_Object* /*object*/, void* /*eventInfo*/)
{
    auto* pThis = static_cast<GuideView*>(data);
    if (!pThis)
    {
        return;
    }
    Evas_Object* pad = elm_layout_add(pThis->mBox);
    if (!pad)
    {
        QIVO_LOG_ERROR("elm_layout_add failed.");
        return;
    }
    elm_layout_file_set(pad, CommonUtil::GetResourcePath(kThemeFile).c_str(), "tutorial/pad");
    elm_box_pack_end(pThis->mBox, pad);
    evas_object_smart_callback_del(pThis->mScroller, "scroll", SOnScrollCB);
}

void GuideView::OnLanguageChanged()
{
    UpdateHelpText();
}

} // namespace QivoUi
