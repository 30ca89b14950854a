#ifndef WATCH_PORT_EFL_EXTENSION_ROTARY_H
#define WATCH_PORT_EFL_EXTENSION_ROTARY_H

#include "efl-extension/EventFilter.h"
#include "efl-extension/ObjectCallbacks.h"
#include <efl_extension.h>

#include <Ecore_Input.h>

namespace WatchPort
{

/**
 * Turns the mouse wheel into detents of the activated object. Nobody else gets the wheel while any
 * object has a callback or is activated.
 */
class Rotary
{
public:
    static Rotary& GetInstance();

    void AddCallback(Evas_Object* object, Evas_Callback_Priority priority,
                     Eext_Rotary_Event_Cb callback, void* data);
    void* RemoveCallback(Evas_Object* object, Eext_Rotary_Event_Cb callback);
    void Activate(Evas_Object* object);
    void Deactivate(Evas_Object* object);

private:
    Rotary() = default;
    static Eina_Bool SWheelFilterCB(void* data, void* loopData, int type, void* event);
    static void SActivatedDeletedCB(void* data, Evas* canvas, Evas_Object* object, void* event);

    void Turn(const Ecore_Event_Mouse_Wheel& wheel) const;
    void Deliver(Eext_Rotary_Event_Info detent) const;

    ObjectCallbacks<Eext_Rotary_Event_Cb> mCallbacks;
    Evas_Object* mActivated = nullptr;
    EventFilter mWheelFilter{SWheelFilterCB, this};
};

} // namespace WatchPort

#endif
