#ifndef QIVO_UI_COMMON_NAVIFRAME_H
#define QIVO_UI_COMMON_NAVIFRAME_H

#include "common/AppEventListener.h"
#include "common/NaviFrameItemData.h"
#include "common/NaviFrameLowerEventListener.h"
#include "common/NaviFramePopTransitionEventListener.h"
#include "common/NaviFrameStateListener.h"
#include <Elementary.h>
#include <map>
#include <memory>

namespace QivoUi
{

class NaviFrameItemPopHandler;

/**
 * The one stack of screens.
 *
 * Wraps a single naviframe widget inside the application's main layout. The application makes
 * it (GetInstance(), SetMainWindow(), CreateNaviFrame()), registers it as an AppEventListener
 * and destroys it at the end; views push themselves and pop themselves through the handle that
 * a push returns.
 *
 * The widget, the window, the items and every listener are owned elsewhere. Failures are
 * logged and the operation abandoned; nothing is retried and no exception leaves an operation.
 *
 * A user of the framework must not destroy the frame in the middle of an animated pop, nor of
 * more than one animated push, nor after an animated pop that was refused or that the toolkit
 * ignored until the next transition has ended: a callback stays registered on the widget and would
 * be given the dead frame. Nor may a listener destroy it inside a push, inside an item's deletion,
 * or while it is told of a transition's end.
 */
class NaviFrame : public AppEventListener
{
public:
    /** The instance, made on first use; never null. */
    static NaviFrame* GetInstance();

    /**
     * Deletes the instance, if there is one. Its widget must still live, for the frame takes a
     * callback off it. An application that deletes its window right afterwards, before anything
     * else runs, may do so also in the middle of a transition: no callback is left to come.
     *
     * An item that dies later finds none and so makes a fresh, empty one: deliberately kept.
     */
    static void Destroy();

    /** Keeps the window that is lowered when the user backs out of the last screen. */
    void SetMainWindow(Evas_Object* window);

    /**
     * Makes the naviframe and puts it into the layout's part "elm.swallow.content".
     *
     * Logs error "[Failed] Invalid layout" for null and "[Failed] Create NaviFrame" when the
     * toolkit makes no widget.
     */
    void CreateNaviFrame(Evas_Object* layout);

    /** The parent under which views make their layouts; null before CreateNaviFrame(). */
    Evas_Object* GetParent();

    /**
     * Pushes a screen.
     *
     * The first screen appears at once; a later one is animated, or put above the top without
     * a transition. The old top's listener is told to pause (not while the application is
     * paused), the new screen's to resume. Logs information
     * "push animationStart" when the push is animated onto another screen.
     *
     * @param data the screen; must hold a record
     * @return the handle of the new item; empty when it could not be pushed, with error
     *         "[Failed] Invalid Naviframe item" (no widget) or "naviFrameItem is NULL"
     */
    std::shared_ptr<NaviFrameItemPopHandler>
    PushNaviframeItem(std::shared_ptr<NaviFrameItemData> data, bool animated);

    /**
     * Pops the top item, or lowers the window when it is the only one (it then stays).
     *
     * @param item must be the top item
     * @param animated with the widget's transition; without, the item is deleted at once
     * @param listener told at the end of the transition; never without one. May be null.
     *
     * While the item's own animated push is moving, the toolkit ignores an animated pop: the item
     * stays, and the back key that asked for it is lost.
     *
     * Logs information "pop animation start", error "pop fail[%s]" with the reason when it
     * cannot pop, and warning
     * "mNaviFrmaeLowerEventListener is NULL" when nobody hears of the lowering.
     */
    void PopItem(Elm_Object_Item* item, bool animated,
                 NaviFramePopTransitionEventListener* listener);

    /**
     * Pops all items above `item`; nothing when it is on top. Those between are deleted at once,
     * and only the top one is asked whether it may go.
     *
     * Logs information "pop to animation start", or error "[Failed] Invalid Naviframe : %p
     * naviframeItem : %p" when the frame or the item is null.
     */
    void PopToItem(Elm_Object_Item* item);

    /**
     * Pops the top item, whatever it is, even the last.
     *
     * Logs information "Pop Start", or error "[Failed] Pop Naviframe item" without a frame.
     */
    void PopTopItem();

    /** Deletes one item without animation; null is ignored. */
    void DeleteItem(Elm_Object_Item* item);

    /** Deletes the top item without animation. */
    void DeleteTopItem();

    /**
     * Deletes all items above `item`, bottom to top; each is logged as error
     * "Delete naviframeItem %p", though nothing has failed. An unknown item is ignored.
     *
     * Logs error "[Faild] Invalid naviFrameItem" without a frame, "navifrmaeItem List is Null"
     * without items. The texts are spelled so.
     */
    void DeleteAboveItems(Elm_Object_Item* item);

    /**
     * Deletes the items strictly between two, bottom to top; logs as DeleteAboveItems().
     *
     * @param upper must lie above `lower`; the other way round the result is undefined
     *
     * Logs also error "Invalid Delete Range" when one is not on the stack, and "Invalid
     * deletedList" when nothing lies between.
     */
    void DeleteBetweenItems(Elm_Object_Item* upper, Elm_Object_Item* lower);

    /**
     * Cuts the part strictly between two nodes out of an item list, bottom item first.
     *
     * @param list consumed: what is not returned is freed
     * @return the part, which the caller frees; null when it is empty
     */
    Eina_List* GetBetweenList(Eina_List* list, Eina_List* upperNode, Eina_List* lowerNode);

    /** Whether the stack has no item. */
    bool IsNaviFrameEmpty();

    /** Lowers the main window, and so pauses the application; error "Invalid Window" without. */
    void TriggerToAppPaused();

    /** Tells the top item's listener of the application's pause, and so on until the resume. */
    void OnAppPause() override;

    /** Tells the top item's listener of the application's resume. */
    void OnAppResume() override;

    /**
     * An item is being deleted: resumes the top item's listener and forgets the item's own.
     *
     * Deliberately for every deletion, also below the top: the top screen may be told to
     * resume more than once, and listeners must bear it. The name is spelled so.
     *
     * Logs warning "mIsAlive is false" when there is no live frame.
     */
    void OnNaviImteDeleted(Elm_Object_Item* item);

    /**
     * The end of a transition, told once for each animated push onto another screen.
     *
     * Not always at its own end: of two pushes in quick succession the first has no end of its
     * own, and one of the two tellings comes at the end of a later transition, which may be a pop.
     *
     * Logs information "Animation Done", or error "pThis is NULL" for null data.
     */
    static void SNaviFrameTransitionFinishedCB(void* data, Evas_Object* object, void* eventInfo);

    /**
     * The end of the pop transition that PopItem() started.
     *
     * A pop that the listener starts here loses its own listener, which is cleared afterwards.
     */
    static void SNaviFramePopTransitionFinishedCB(void* data, Evas_Object* object, void* eventInfo);

private:
    NaviFrame();
    ~NaviFrame() override;

    NaviFrameStateListener* FindStateListener(Elm_Object_Item* item) const;
    NaviFrameStateListener* FindTopListener() const;

    static NaviFrame* mInstance;
    static bool mIsAlive;

    Evas_Object* mNaviFrame = nullptr;
    Evas_Object* mWindow = nullptr;
    bool mIsPaused = false;
    std::map<Elm_Object_Item*, NaviFrameStateListener*> mStateListenerMap;

public:
    /** Told when a pop of the only item lowered the window; may be null. Not owned. Spelled so. */
    NaviFrameLowerEventListener* mNaviFrmaeLowerEventListener = nullptr;

private:
    NaviFramePopTransitionEventListener* mPopTransitionEventListener = nullptr;
};

} // namespace QivoUi

#endif
