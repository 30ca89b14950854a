#ifndef CARDS_THEMEDVIEW_H
#define CARDS_THEMEDVIEW_H

#include "common/BaseView.h"
#include <string>

namespace Cards
{

/** Hears that a part of a screen was tapped. Set on a view, never owned. */
class TapListener
{
public:
    virtual ~TapListener() = default;

    /**
     * @param part the part's name in the theme
     * @param index which of several layouts of a kind, from 0
     */
    virtual void OnTapped(const std::string& part, int index) = 0;
};

/** A text of the catalogue in the watch's language. */
std::string Text(const char* id);

/**
 * A view whose screen is one group of the theme. A screen's own view fills the group's parts:
 * Fill() makes the widgets once, SetTexts() sets the texts now and in each new language.
 */
class ThemedView : public QivoUi::BaseView
{
public:
    std::shared_ptr<QivoUi::NaviFrameItemData> CreateViewImpl(Evas_Object* parent) override;

    /** Sets texts and title again. */
    void OnLanguageChanged() override;

    /** Null for none; both are set before CreateView(), and not owned. */
    TapListener* mTapListener = nullptr;
    QivoUi::NaviFrameStateListener* mStateListener = nullptr;

protected:
    /** @param group of the theme file "edje/cards.edj" */
    explicit ThemedView(const char* group) : mGroup(group) {}

    virtual void Fill() {}
    virtual void SetTexts() = 0;

    /** The screen's title in the watch's language; empty for a screen without one. */
    virtual std::string GetTitle() const { return ""; }

    /** The screen's layout; made before Fill() is called. */
    Evas_Object* GetLayout() const { return mLayout; }

    /** Makes a layout of the theme whose taps are told with an index. */
    Evas_Object* MakeLayout(Evas_Object* parent, const char* group, int index);

    /**
     * Makes the scroller of the part "scroller", and a box in it.
     *
     * @param style of the scroller: "effect" fades what is scrolled up
     * @return the box
     */
    Evas_Object* MakeScrolledBox(Evas_Object** scroller, const char* style);

private:
    static void STappedCB(void* data, Evas_Object* layout, const char* signal, const char* part);

    const char* mGroup;
    Evas_Object* mLayout = nullptr;
};

} // namespace Cards

#endif
