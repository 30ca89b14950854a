#ifndef QIVO_UI_COMMON_NAVIFRAMEITEMPOPHANDLER_H
#define QIVO_UI_COMMON_NAVIFRAMEITEMPOPHANDLER_H

#include "common/NaviFramePopEventListener.h"
#include "common/NaviFramePopTransitionEventListener.h"
#include <Elementary.h>
#include <memory>

namespace QivoUi
{

/**
 * The handle of a pushed screen, with which its owner pops or deletes it.
 *
 * Bound by the push; unbound again when the naviframe pops the item with the listener's
 * consent, when the item is deleted, and by DeleteItem(). An unbound handle does nothing. The
 * handle may outlive its item, and the item its handle: the destructor takes the handle's
 * callbacks off an item that is still bound.
 *
 * A user of the framework must not release the handle while a pop that it consented to is
 * still animating: the handle is unbound by then and leaves its deletion callback on the item.
 * Nor may the last share go while the handle is at work: in OnViewPoped(), in DeleteItem(), or
 * in what a listener does when the item's deletion resumes it.
 */
class NaviFrameItemPopHandler
{
public:
    NaviFrameItemPopHandler() = default;
    virtual ~NaviFrameItemPopHandler();

    /**
     * Binds to a freshly pushed item; null changes nothing.
     *
     * Once for each handle: an item that it was bound to before would keep its callbacks.
     */
    void SetNaviframeItem(Elm_Object_Item* item);

    /** Pops the screen, which must be on top; see NaviFrame::PopItem(). */
    void Pop(bool animated, NaviFramePopTransitionEventListener* listener);

    /** Pops everything above the screen. */
    void PopTo();

    /** Deletes the screen without animation. */
    void DeleteItem();

    /** Deletes everything above the screen; error "[Failed] Invalid NaviFrameItem" unbound. */
    void DeleteAboveNaviFrameItem();

    /**
     * Deletes the screens between this one and another.
     *
     * @param lower must not be empty, and its screen must lie below this one
     */
    void DeleteBetweenNaviFrameItem(std::shared_ptr<NaviFrameItemPopHandler> lower);

    /** The naviframe asks whether the item may be popped. */
    static Eina_Bool SNaviFramePopedCB(void* data, Elm_Object_Item* item);

    /** The item, given as event information, is being deleted. */
    static void NaviFrameItemDelCB(void* data, Evas_Object* object, void* eventInfo);

private:
    Elm_Object_Item* mNaviFrameItem = nullptr;

public:
    /**
     * Asked before each pop of the item; null lets every pop go. Set after the push. Not owned:
     * whoever keeps the handle longer than the listener lives sets it to null.
     */
    NaviFramePopEventListener* mPopEventListener = nullptr;
};

} // namespace QivoUi

#endif
