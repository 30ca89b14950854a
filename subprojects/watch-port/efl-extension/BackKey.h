#ifndef WATCH_PORT_EFL_EXTENSION_BACK_KEY_H
#define WATCH_PORT_EFL_EXTENSION_BACK_KEY_H

#include "efl-extension/EventFilter.h"
#include "efl-extension/ObjectCallbacks.h"
#include <efl_extension.h>

#include <Ecore_Input.h>

namespace WatchPort
{

/**
 * Gives the back key to the object on top, and keeps its presses from the widgets while any object
 * has a callback.
 */
class BackKey
{
public:
    static BackKey& GetInstance();

    void AddCallback(Evas_Object* object, Eext_Event_Cb callback, void* data);

private:
    BackKey() = default;
    static Eina_Bool SKeyReleasedCB(void* data, int type, void* event);
    static Eina_Bool SKeyPressFilterCB(void* data, void* loopData, int type, void* event);

    void CallTopObject(const Ecore_Event_Key& key) const;

    ObjectCallbacks<Eext_Event_Cb> mCallbacks;
    EventFilter mPressFilter{SKeyPressFilterCB, this};
};

} // namespace WatchPort

#endif
