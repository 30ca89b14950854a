#include "efl-extension/BackKey.h"

#include "base/ApplicationCalls.h"
#include "efl-extension/Stacking.h"

#include <Ecore_Evas.h>

#include <cstring>

namespace WatchPort
{

namespace
{

bool IsBackKey(const Ecore_Event_Key& key)
{
    return key.keyname && (!strcmp(key.keyname, "XF86Back") || !strcmp(key.keyname, "Escape"));
}

bool IsInWindow(const Evas* canvas, Ecore_Window window)
{
    const Ecore_Evas* host = ecore_evas_ecore_evas_get(canvas);
    return host && ecore_evas_window_get(host) == window;
}

// Between two windows without the key the current one stays; newer objects come first.
bool TakesKeyFrom(const Evas_Object* object, const Evas_Object* former, Ecore_Window window)
{
    const Evas* canvas = evas_object_evas_get(object);
    const Evas* formerCanvas = evas_object_evas_get(former);
    if (canvas == formerCanvas)
        return IsAbove(object, former);
    return IsInWindow(canvas, window) && !IsInWindow(formerCanvas, window);
}

} // namespace

BackKey& BackKey::GetInstance()
{
    static BackKey instance;
    return instance;
}

void BackKey::AddCallback(Evas_Object* object, Eext_Event_Cb callback, void* data)
{
    mCallbacks.Add(object, EVAS_CALLBACK_PRIORITY_DEFAULT, callback, data);
    if (mPressFilter.Start())
        ecore_event_handler_add(ECORE_EVENT_KEY_UP, SKeyReleasedCB, this);
}

// The press belongs to the key as well: a naviframe would pop its screen on Escape.
Eina_Bool BackKey::SKeyPressFilterCB(void* data, void*, int type, void* event)
{
    const bool isPress = type == ECORE_EVENT_KEY_DOWN;
    if (!isPress || static_cast<BackKey*>(data)->mCallbacks.All().empty())
        return EINA_TRUE;
    return !IsBackKey(*static_cast<Ecore_Event_Key*>(event));
}

Eina_Bool BackKey::SKeyReleasedCB(void* data, int, void* event)
{
    const auto& key = *static_cast<Ecore_Event_Key*>(event);
    if (IsBackKey(key))
        static_cast<BackKey*>(data)->CallTopObject(key);
    return ECORE_CALLBACK_PASS_ON;
}

void BackKey::CallTopObject(const Ecore_Event_Key& key) const
{
    Evas_Object* top = nullptr;
    for (const auto& entry : mCallbacks.All())
        if (entry->object != top && IsInSight(entry->object) &&
            (!top || TakesKeyFrom(entry->object, top, key.window)))
            top = entry->object;

    for (const auto& entry : mCallbacks.Of(top))
        if (!entry->isRemoved && MayCallApplication())
            entry->callback(entry->data, entry->object, nullptr);
}

} // namespace WatchPort
