#ifndef QIVO_UI_COMMON_BASEVIEW_H
#define QIVO_UI_COMMON_BASEVIEW_H

#include "common/BaseViewEventListener.h"
#include "common/NaviFrameItemData.h"
#include "common/NaviFrameItemPopHandler.h"
#include "common/NaviFramePopEventListener.h"
#include <Evas.h>
#include <memory>

namespace QivoUi
{

/**
 * The base of every screen.
 *
 * A view's life, and what belongs in each hook:
 *  1. CreateView(), once: CreateViewImpl() builds the widgets and returns the screen's record;
 *     the record's layout is wired to the back key, to its own deletion and to the language.
 *  2. Show(), once: the record is pushed on the navigation frame.
 *  3. OnLanguageChanged(): set the texts again; nothing else is refreshed by itself.
 *  4. OnViewPoped(): the screen is about to go; the controller decides.
 *  5. OnLayoutDeleted(): the widgets are going; the controller is told. The view must not be
 *     deleted in here, the caller still uses it.
 *  6. The view dies when its last shared owner lets it go.
 *
 * The back-key callback is never taken off the layout: a view must not die while its layout
 * lives and the back key can still be pressed. Nor while anybody but its controller keeps the
 * handle of its item, which would go on asking the dead view whether it may pop.
 */
class BaseView : public NaviFramePopEventListener
{
public:
    BaseView() = default;
    ~BaseView() override;

    /**
     * Asks the controller whether the screen may be popped.
     *
     * @return the controller's answer; true without one, with warning
     *         "mViewEventListener is NULL"
     */
    bool OnViewPoped() override;

    /**
     * Pushes the view. It has one layout, which stands in one screen and goes with it: a second
     * Show() takes the layout out of the first screen, and one after the screen was popped pushes a
     * layout that is deleted. Either way a screen remains that is blank and does not hear the back
     * key. A view to be shown anew is made anew.
     *
     * @return the handle of its item; empty on failure, with error
     *         "[Failed] Invalid NaviFrameItemDataPtr" when CreateView() gave no record
     */
    virtual std::shared_ptr<NaviFrameItemPopHandler> Show(bool animated);

    /**
     * Builds the screen.
     *
     * @param parent the naviframe; owned by the widget tree
     * @return the record to push; empty when nothing could be built
     */
    virtual std::shared_ptr<NaviFrameItemData> CreateViewImpl(Evas_Object* parent) = 0;

    /** The texts are to be set in the new language. */
    virtual void OnLanguageChanged() {}

    /** The theme's colours or fonts have changed. */
    virtual void OnThemeChanged() {}

    /** The layout is being deleted; tells the controller, or warns that there is none. */
    virtual void OnLayoutDeleted();

    /** Builds the view and wires its layout; error "[Failed] Invalid parent" without a frame. */
    void CreateView();

    /** The screen's root object; null before, with warning "mNaviFramItemDataPtr is NULL". */
    Evas_Object* GetViewLayout();

    /** The back key; writes the marker line, and warning "mViewEventListener is NULL". */
    static void SLayoutBackCB(void* data, Evas_Object* object, void* eventInfo);

    /** The layout is being deleted: runs OnLayoutDeleted() and forgets the layout. */
    static void SViewObjectDeleteCB(void* data, Evas* canvas, Evas_Object* object, void* eventInfo);

    /** The toolkit's language has changed: runs OnLanguageChanged(). */
    static void SLanguageChangedCB(void* data, Evas_Object* object, void* eventInfo);

    /** For views that subscribe to changes of the theme; error "pThis is NULL" for null. */
    static void SThemeChangedCB(void* data);

private:
    // Spelled so.
    std::shared_ptr<NaviFrameItemData> mNaviFramItemDataPtr;

public:
    /** Hears of back, pop and deletion; null for none. Not owned. */
    BaseViewEventListener* mViewEventListener = nullptr;

private:
    // The layout with our callbacks; null before CreateView() and once it is deleted.
    Evas_Object* mLayout = nullptr;
};

} // namespace QivoUi

#endif
