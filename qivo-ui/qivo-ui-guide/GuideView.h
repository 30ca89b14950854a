#ifndef QIVO_UI_GUIDE_GUIDEVIEW_H
#define QIVO_UI_GUIDE_GUIDEVIEW_H

#include "common/BaseView.h"

namespace QivoUi
{

/**
 * The tutorial page: help image, arrow hint and help text in a scroller that the bezel turns.
 *
 * The widgets, from the outer layout down (groups and parts of "edje/qivoui.edj"):
 *
 *     "tutorial/scroller"                  the screen's layout
 *       "scroller": scroller, wrapped by a circle scroller
 *         box
 *           "tutorial/page/guide"          "help_image", "arrow_image", "help_text",
 *                                          signals "show_arrow" and "hide_arrow"
 *           "tutorial/pad"                 from the first scroll on
 *
 * They all belong to the widget tree; the view deletes none, and its handles are null until
 * the widget is made. They are never cleared: once the layout is gone they dangle, and neither
 * SetArrowVisible() nor OnLanguageChanged() may be called any more. When the outer layout or the
 * page cannot be made, error "elm_layout_add failed." is logged, the record gets no layout, and
 * the widgets made so far stay under the parent.
 *
 * The scroll callback stays on the scroller when the view dies: until the first scroll, the view
 * must live as long as the page can be scrolled.
 */
class GuideView : public BaseView
{
public:
    GuideView() = default;
    ~GuideView() override = default;

    /**
     * Builds the page.
     *
     * @return the record, whose layout is null when the page could not be built; empty, with
     *         error "[Failed] Invalid parent", for a null parent
     */
    std::shared_ptr<NaviFrameItemData> CreateViewImpl(Evas_Object* parent) override;

    /** Sets the help text again; images and arrow stay as they are. */
    void OnLanguageChanged() override;

    /** Builds the widgets. @return the outer layout, null on failure */
    Evas_Object* CreateLayout(Evas_Object* parent);

    /** Shows or hides the arrow hint; before the page is built, the wish is kept for it. */
    void SetArrowVisible(bool visible);

    /**
     * The first scroll appends the pad that lets the last line come to the middle.
     *
     * @param data the view; null is ignored. A pad that cannot be made is an error
     *             "elm_layout_add failed." and tried again at the next scroll.
     */
    static void SOnScrollCB(void* data, Evas_Object* object, void* eventInfo);

private:
    void CreateScroller(Evas_Object* outerLayout);
    void ActivateCircleScroller();
    void CreateBox();
    void FillPage(Evas_Object* page);
    void UpdateHelpText();

    Evas_Object* mGuideLayout = nullptr;
    Evas_Object* mScroller = nullptr;
    Evas_Object* mBox = nullptr;
    bool mIsArrowVisible = true;
};

} // namespace QivoUi

#endif
