#ifndef WATCH_PORT_EFL_EXTENSION_BACK_KEY_H
#define WATCH_PORT_EFL_EXTENSION_BACK_KEY_H

#include "efl-extension/ObjectCallbacks.h"
#include "efl-extension/efl_extension.h"

#include <Ecore_Input.h>

namespace WatchPort
{

/// Gives the back key to the object on top, and keeps its presses from the widgets. It listens to
/// keys while any object has a callback.
class BackKey
{
public:
    static BackKey& GetInstance();

    void AddCallback(Evas_Object* object, Eext_Event_Cb callback, void* data);

private:
    BackKey();
    static Eina_Bool SKeyReleasedCB(void* data, int type, void* event);
    static Eina_Bool SKeyPressFilterCB(void* data, void* loopData, int type, void* event);

    void ListenWhileNeeded();
    void CallTopObject(const Ecore_Event_Key& key) const;

    ObjectCallbacks<Eext_Event_Cb> mCallbacks;
    Ecore_Event_Handler* mHandler = nullptr;
    Ecore_Event_Filter* mPressFilter = nullptr;
};

} // namespace WatchPort

#endif
