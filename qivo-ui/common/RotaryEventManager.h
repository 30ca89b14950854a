#ifndef QIVO_UI_COMMON_ROTARYEVENTMANAGER_H
#define QIVO_UI_COMMON_ROTARYEVENTMANAGER_H

#include "common/RotaryEventListener.h"
#include <Elementary.h>
#include <efl_extension.h>
#include <list>
#include <memory>

namespace QivoUi
{

/**
 * The one owner of the choice which object gets the bezel's detents.
 *
 * Keeps an activation stack of records. A listener record is made by RegisterEventListener():
 * the manager installs its rotary callback on the listener's object and turns each detent into
 * a call of the listener on top. A widget record is made by ActivateRotateElementaryWidget()
 * for a widget that consumes detents by itself, such as a circle scroller. The record on top is
 * the activated one; when it goes, the one below is activated again.
 *
 * Listeners and objects are never owned. An object's records go with the object; a listener
 * must be unregistered, or its object deleted, before it dies. The instance lives until the
 * process ends. All calls belong on the main loop.
 */
class RotaryEventManager
{
public:
    /** A place on the activation stack; one object may have several. */
    class RotaryEventData
    {
    public:
        virtual ~RotaryEventData() = default;

        /** Activated while the record is on top. Not owned. */
        Evas_Object* mViewObject = nullptr;

        /** Gets the detents; null for a widget record. Not owned. */
        RotaryEventListener* mEventListener = nullptr;
    };

    /**
     * The manager, made on first use; never null.
     *
     * Making it forgets a circle surface that was made before: deliberately kept, so make the
     * manager first.
     */
    static RotaryEventManager* GetInstance();

    /**
     * Deletes the manager. Objects stay activated and keep its rotary callbacks, so every
     * listener must be unregistered before; the circle surface is kept.
     */
    static void Destroy();

    /**
     * Makes the process's circle surface.
     *
     * @return the surface; the existing one with error "Already mCircleSurface Exist", null
     *         with error "Failed Create Circle Surface". Owned by the watch's library.
     */
    static Eext_Circle_Surface* CreateCircleSurface(Evas_Object* conformant);

    /** The circle surface; null when none was made. */
    static Eext_Circle_Surface* GetCircleSurface();

    /**
     * Puts a listener on top. Registering twice makes two records.
     *
     * Logs warning "eventListener is NULL" for null, and error
     * "[Failed] register eext_rotary_event_callback_set" when its object refuses the callback;
     * the listener is on top all the same.
     */
    void RegisterEventListener(RotaryEventListener* eventListener);

    /**
     * Takes the listener's oldest record away; nothing for an unknown one.
     *
     * Logs information "object:%p", or error "Invalid eventListener" for null.
     */
    void UnRegisterEventListener(RotaryEventListener* eventListener);

    /** Puts a widget that consumes detents by itself on top; null is ignored. */
    void ActivateRotateElementaryWidget(Evas_Object* object);

    /** Takes the object's oldest record away; error "Invalid viewObject" for null. */
    void DeActivateRotateElementaryWidget(Evas_Object* object);

    /**
     * Installs the manager's rotary callback on an object; null is ignored.
     *
     * Logs error "[Failed] register eext_rotary_event_callback_set" when it is refused.
     */
    void SetRotaryEventCB(Evas_Object* object);

    /** Takes the manager's rotary callback off an object; null is ignored. */
    void UnSetRotaryEventCB(Evas_Object* object);

    /**
     * Puts a record on top and activates its object.
     *
     * Logs warning "object :%p", or error "[Invalid] rotaryEventDataPtr" for an empty record.
     * Deliberately asks neither for a second record of the object nor for a null object. The same
     * record must not be put on the stack twice unless the manager outlives its object: taking it
     * away leaves one of its two delete callbacks on the object.
     */
    void ActivateRotateEvent(std::shared_ptr<RotaryEventData> record);

    /**
     * Takes a record off the stack, wherever it is, and activates the one now on top.
     *
     * Logs warning "object :%p" with the object now on top, or error
     * "Initialize Rotary Activation" when nothing is left. Every call closes with
     * the marker line, an empty record has only that.
     *
     * A record that is not on the stack takes the delete callback of one that is, when both name
     * the same object; that one must then be taken away before the object dies.
     */
    void DeActivateRotateEvent(std::shared_ptr<RotaryEventData> record);

    /** The listener's oldest record, empty when none; null: error "Invalid eventListener". */
    std::shared_ptr<RotaryEventData> FindRotaryEventData(RotaryEventListener* eventListener);

    /** The object's oldest record, empty when none; null: error "Invalid viewObject". */
    std::shared_ptr<RotaryEventData> FindRotaryEventData(Evas_Object* viewObject);

    /**
     * A detent. It deliberately goes to the listener on top, whichever object it came in on.
     *
     * Logs warning "Rotary direction: %d", or "mRotaryEventDataList is empty" or
     * "mEventListener is NULL" when nobody can hear. @return EINA_FALSE, always
     */
    static Eina_Bool SRotaryEventCB(void* data, Evas_Object* object, Eext_Rotary_Event_Info* info);

    /** An object with a record is being deleted. */
    static void SViewObjectDeleteCB(void* data, Evas* canvas, Evas_Object* object, void* eventInfo);

private:
    RotaryEventManager();
    virtual ~RotaryEventManager();

    static RotaryEventManager* mPThis;

    // Not owned, and not told when they go.
    static Evas_Object* mConformant;
    static Eext_Circle_Surface* mCircleSurface;

    // Oldest first; the activated one is at the back.
    std::list<std::shared_ptr<RotaryEventData>> mRotaryEventDataList;

    // Deliberately never filled; it keeps its slot.
    std::list<RotaryEventData*> mSpareList;
};

} // namespace QivoUi

#endif
