#ifndef PAGEVIEW_H
#define PAGEVIEW_H

#include "common/BaseView.h"

/** A page with a picture and a text, which the bezel scrolls. */
class PageView : public QivoUi::BaseView
{
public:
    std::shared_ptr<QivoUi::NaviFrameItemData> CreateViewImpl(Evas_Object* parent) override;

    /** Sets the text again. */
    void OnLanguageChanged() override;

private:
    Evas_Object* MakeScrolledBox(Evas_Object* screen);

    /** In the box; deleted with the screen. */
    Evas_Object* mPage = nullptr;
};

#endif
