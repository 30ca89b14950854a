#include "harness/PlatformState.h"

using Platform::sState;

extern "C" {

void eext_object_event_callback_add(Evas_Object* object, Eext_Callback_Type type,
                                    Eext_Event_Cb callback, void* data)
{
    const Allocations::Pause pause;
    Recorder::AddCall("eext_object_event_callback_add", object, type, callback, data);
    if (Platform::IsToldToFail("eext_object_event_callback_add"))
    {
        return;
    }
    sState.backCallbacks.push_back({object, callback, data});
}

Eext_Circle_Surface* eext_circle_surface_conformant_add(Evas_Object* conformant)
{
    static char sSurface;
    Recorder::AddCall("eext_circle_surface_conformant_add", conformant);
    void* surface =
        Platform::IsToldToFail("eext_circle_surface_conformant_add") ? nullptr : &sSurface;
    Recorder::NameResult("eext_circle_surface_conformant_add", surface);
    return static_cast<Eext_Circle_Surface*>(surface);
}

Evas_Object* eext_circle_object_scroller_add(Evas_Object* scroller, Eext_Circle_Surface* surface)
{
    Recorder::AddCall("eext_circle_object_scroller_add", scroller, surface);
    Evas_Object* circle = nullptr;
    if (!Platform::IsToldToFail("eext_circle_object_scroller_add"))
    {
        circle = evas_object_rectangle_add(evas_object_evas_get(scroller));
    }
    Recorder::NameResult("eext_circle_object_scroller_add", circle);
    return circle;
}

void eext_circle_object_scroller_policy_set(Evas_Object* object, Elm_Scroller_Policy horizontal,
                                            Elm_Scroller_Policy vertical)
{
    Recorder::AddCall("eext_circle_object_scroller_policy_set", object, horizontal, vertical);
    Platform::IsToldToFail("eext_circle_object_scroller_policy_set");
}

Eina_Bool eext_rotary_object_event_callback_priority_add(Evas_Object* object,
                                                         Evas_Callback_Priority priority,
                                                         Eext_Rotary_Event_Cb callback, void* data)
{
    const Allocations::Pause pause;
    Recorder::AddCall("eext_rotary_object_event_callback_priority_add", object, priority, callback,
                      data);
    std::intptr_t answer = EINA_FALSE;
    if (Recorder::TakeAnswer("eext_rotary_object_event_callback_priority_add", answer))
    {
        return static_cast<Eina_Bool>(answer);
    }
    sState.rotaryCallbacks.push_back({object, callback, data});
    return EINA_TRUE;
}

void* eext_rotary_object_event_callback_del(Evas_Object* object, Eext_Rotary_Event_Cb callback)
{
    Recorder::AddCall("eext_rotary_object_event_callback_del", object, callback);
    if (Platform::IsToldToFail("eext_rotary_object_event_callback_del"))
    {
        return nullptr;
    }
    auto& registered = sState.rotaryCallbacks;
    for (auto rotary = registered.begin(); rotary != registered.end(); ++rotary)
    {
        if (rotary->object == object && rotary->callback == callback)
        {
            void* data = rotary->data;
            registered.erase(rotary);
            return data;
        }
    }
    return nullptr;
}

void eext_rotary_object_event_activated_set(Evas_Object* object, Eina_Bool isActivated)
{
    Recorder::AddCall("eext_rotary_object_event_activated_set", object, isActivated);
    if (Platform::IsToldToFail("eext_rotary_object_event_activated_set"))
    {
        return;
    }
    if (isActivated)
    {
        sState.activatedObject = object;
    }
    else if (sState.activatedObject == object)
    {
        sState.activatedObject = nullptr;
    }
}

} // extern "C"
