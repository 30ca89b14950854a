#ifndef WATCH_PORT_EFL_EXTENSION_H
#define WATCH_PORT_EFL_EXTENSION_H

/**
 * The circular-screen extension: the back key, the bezel, and a scroller that the bezel turns.
 *
 * Call all functions on the main loop's thread, between elm_init() and elm_shutdown(). A wrong
 * argument and a lack of memory are one line in the log (tag "WATCH_PORT") and change nothing.
 */

#include <Elementary.h>

#ifdef __cplusplus
extern "C" {
#endif

/** The keys that an object can have callbacks for. */
typedef enum
{
    EEXT_CALLBACK_BACK, /**< the back key, which leaves the present screen */
} Eext_Callback_Type;

/**
 * Called for a key.
 *
 * @param data the data of eext_object_event_callback_add()
 * @param object the object that the callback was added to
 * @param event_info null
 */
typedef void (*Eext_Event_Cb)(void* data, Evas_Object* object, void* event_info);

/**
 * Adds a callback for the back key to an object.
 *
 * The back key is the release of "XF86Back", or of "Escape" for a keyboard. It goes to one object:
 * of all objects that have a callback and are in sight, the highest in the stacking order of its
 * window. An object is in sight when it is visible and its clipping leaves it an area on the
 * canvas. A screen that is not shown yet, or that is below another one in a naviframe, is not in
 * sight. While two screens of a naviframe change places both are in sight, and the upper one gets
 * the key. The key event's own window comes before other windows, and of those the one with the
 * newest callback. All callbacks of that one object are called, the newest first. Other handlers
 * get the key too. No widget gets its press while any object has a callback.
 *
 * The callback stays until its object is deleted. Callbacks may delete any object and add
 * callbacks: those of a deleted object are no longer called, new ones are called from the next key
 * on.
 *
 * @param object any canvas object, not null
 * @param type EEXT_CALLBACK_BACK
 * @param callback the function to call, not null
 * @param data passed to the callback
 */
void eext_object_event_callback_add(Evas_Object* object, Eext_Callback_Type type,
                                    Eext_Event_Cb callback, void* data);

/** The round surface of a conformant, on which circle objects draw at the screen's edge. */
typedef struct _Eext_Circle_Surface Eext_Circle_Surface;

/**
 * Makes the circle surface of a conformant. The surface has the conformant's geometry and is freed
 * with it. Its circle objects then stop drawing and go on working without it.
 *
 * @param conformant the window's conformant, or any other object of the screen's size
 * @return the surface; null if the conformant is null or there is no memory
 */
Eext_Circle_Surface* eext_circle_surface_conformant_add(Evas_Object* conformant);

/**
 * Makes a circle object that scrolls a scroller with the bezel while the circle object is activated
 * with eext_rotary_object_event_activated_set().
 *
 * A clockwise detent scrolls towards the end of the content, a counter-clockwise one towards the
 * start, with the toolkit's own animation and the scroller's usual smart signals. It goes over the
 * lines of text that are in a quarter of the viewport, at least one: eight are in the viewport, of
 * larger text down to four. Detents that come while it moves add up. It stops at both ends. What a
 * finger leaves between two lines, scrolled vertically, goes on to the nearer one. It scrolls
 * vertically if the content is higher than the viewport, else horizontally, and not at all while
 * that direction is locked (elm_object_scroll_lock_y_set() and its like,
 * elm_scroller_movement_block_set()) or scrolling is frozen (elm_object_scroll_freeze_push()).
 *
 * From now on a finger does not pull it sideways beyond its ends (elm_scroller_bounce_set()): the
 * toolkit (1.26) never ends the motion back from there.
 *
 * With a surface it also draws the scroll position as an arc at the surface's edge, to the right
 * for vertical scrolling and at the bottom for horizontal scrolling.
 *
 * Handlers of the scroller's signals may delete the scroller or the circle object. A scroller that
 * is deleted while a detent moves it lives until that is done.
 *
 * @param scroller an Elementary scroller, not null
 * @param surface where to draw, or null to draw nothing; a surface whose conformant is gone is
 *                one line in the log and counts as null
 * @return the circle object, on the scroller's canvas and deleted with the scroller; null if the
 *         scroller is null or there is no memory
 */
Evas_Object* eext_circle_object_scroller_add(Evas_Object* scroller, Eext_Circle_Surface* surface);

/**
 * Says when the arc of the scroll position is drawn, for each direction of scrolling.
 *
 * ELM_SCROLLER_POLICY_AUTO, the default: while the content moves and half a second longer, if it is
 * longer than the viewport. ELM_SCROLLER_POLICY_ON: always. ELM_SCROLLER_POLICY_OFF:
 * never.
 *
 * @param object a circle object from eext_circle_object_scroller_add()
 * @param horizontal the policy while scrolling is horizontal
 * @param vertical the policy while scrolling is vertical
 */
void eext_circle_object_scroller_policy_set(Evas_Object* object, Elm_Scroller_Policy horizontal,
                                            Elm_Scroller_Policy vertical);

/** Which way the bezel was turned. */
typedef enum
{
    EEXT_ROTARY_DIRECTION_CLOCKWISE = 0,         /**< the mouse wheel towards the user: down */
    EEXT_ROTARY_DIRECTION_COUNTER_CLOCKWISE = 1, /**< the mouse wheel away from the user: up */
} Eext_Rotary_Event_Direction;

/** One detent of the bezel. */
typedef struct
{
    Eext_Rotary_Event_Direction direction;
    unsigned int time_stamp; /**< the input event's own time, in milliseconds */
} Eext_Rotary_Event_Info;

/**
 * Called for one detent.
 *
 * @param data the data of eext_rotary_object_event_callback_priority_add()
 * @param object the activated object
 * @param info the detent, valid during the call
 * @return EINA_TRUE to keep the detent from the remaining callbacks, else EINA_FALSE
 */
typedef Eina_Bool (*Eext_Rotary_Event_Cb)(void* data, Evas_Object* object,
                                          Eext_Rotary_Event_Info* info);

/**
 * Adds a callback for the bezel to an object. It is called while the object is activated.
 *
 * The bezel is the mouse wheel over any window of the process, one notch a detent. An event of
 * several notches is as many detents, at most 100. While any object has a callback or is activated,
 * no widget sees wheel events of either axis. A horizontal wheel gives no detent.
 *
 * Callbacks run in Evas's order: the lower priority value first, of equal ones the newest first.
 * Adding a callback again is a second registration, and both are called. Callbacks may add and
 * remove callbacks, delete objects and change the activation: removed ones are no longer called,
 * and added or activated ones get the next detent.
 *
 * @param object any canvas object; its callbacks are removed when it is deleted
 * @param priority EVAS_CALLBACK_PRIORITY_DEFAULT or any other value
 * @param callback the function to call
 * @param data passed to the callback
 * @return EINA_TRUE; EINA_FALSE if the object or callback is null or there is no memory
 */
Eina_Bool eext_rotary_object_event_callback_priority_add(Evas_Object* object,
                                                         Evas_Callback_Priority priority,
                                                         Eext_Rotary_Event_Cb callback, void* data);

/**
 * Removes a callback from an object; if it was added several times, the newest registration.
 *
 * @param object the object that it was added to
 * @param callback the function that was added
 * @return the data of the removed registration, or null if there is none
 */
void* eext_rotary_object_event_callback_del(Evas_Object* object, Eext_Rotary_Event_Cb callback);

/**
 * Activates an object for the bezel, or ends its activation.
 *
 * At most one object is activated. Activating another one, or deleting it, ends its activation.
 * Ending the activation of any other object changes nothing.
 *
 * @param object any canvas object, with callbacks or without
 * @param activated EINA_TRUE to activate it
 */
void eext_rotary_object_event_activated_set(Evas_Object* object, Eina_Bool activated);

#ifdef __cplusplus
}
#endif

#endif
