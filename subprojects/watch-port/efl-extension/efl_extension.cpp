#include <efl_extension.h>

#include "dlog/PortLog.h"
#include "efl-extension/BackKey.h"
#include "efl-extension/Rotary.h"
#include "efl-extension/circle/CircleScroller.h"
#include "efl-extension/circle/CircleSurface.h"

#include <new>

using namespace WatchPort;

namespace
{

bool IsGiven(bool isGiven, const char* function, const char* what)
{
    return isGiven || PORT_REFUSE(false, function, "%s", what);
}

constexpr const char* kNoObject = "object is null (must be a canvas object)";
constexpr const char* kNoCallback = "callback is null (must be a function)";

bool IsPolicy(Elm_Scroller_Policy policy)
{
    return policy >= ELM_SCROLLER_POLICY_AUTO && policy < ELM_SCROLLER_POLICY_LAST;
}

} // namespace

void eext_object_event_callback_add(Evas_Object* object, Eext_Callback_Type type,
                                    Eext_Event_Cb callback, void* data)
try
{
    if (!IsGiven(object, __func__, kNoObject) || !IsGiven(callback, __func__, kNoCallback))
        return;
    if (IsGiven(type == EEXT_CALLBACK_BACK, __func__, "unknown type (must be EEXT_CALLBACK_BACK)"))
        BackKey::GetInstance().AddCallback(object, callback, data);
}
catch (const std::bad_alloc&)
{
    PORT_LOG_ERROR("%s: out of memory", __func__);
}

Eext_Circle_Surface* eext_circle_surface_conformant_add(Evas_Object* conformant)
try
{
    if (!IsGiven(conformant, __func__, "conformant is null (must be a conformant)"))
        return nullptr;
    return Eext_Circle_Surface::Create(conformant);
}
catch (const std::bad_alloc&)
{
    return PORT_REFUSE(nullptr, __func__, "out of memory");
}

Evas_Object* eext_circle_object_scroller_add(Evas_Object* scroller, Eext_Circle_Surface* surface)
try
{
    if (!IsGiven(scroller, __func__, "scroller is null (must be a scroller)"))
        return nullptr;
    bool isDrawn = surface && IsGiven(Eext_Circle_Surface::IsAlive(surface), __func__,
                                      "surface is gone (its conformant must be alive)");
    return CircleScroller::Create(scroller, isDrawn ? surface->conformant : nullptr);
}
catch (const std::bad_alloc&)
{
    return PORT_REFUSE(nullptr, __func__, "out of memory");
}

void eext_circle_object_scroller_policy_set(Evas_Object* object, Elm_Scroller_Policy horizontal,
                                            Elm_Scroller_Policy vertical)
{
    CircleScroller* circleScroller = object ? CircleScroller::Of(object) : nullptr;
    if (!IsGiven(circleScroller, __func__, "object is not a circle scroller"))
        return;
    if (!IsPolicy(horizontal) || !IsPolicy(vertical))
        PORT_LOG_ERROR("%s: policies %d and %d (must be 0 auto, 1 on or 2 off)", __func__,
                       static_cast<int>(horizontal), static_cast<int>(vertical));
    else
        circleScroller->SetPolicy(horizontal, vertical);
}

Eina_Bool eext_rotary_object_event_callback_priority_add(Evas_Object* object,
                                                         Evas_Callback_Priority priority,
                                                         Eext_Rotary_Event_Cb callback, void* data)
try
{
    if (!IsGiven(object, __func__, kNoObject) || !IsGiven(callback, __func__, kNoCallback))
        return EINA_FALSE;
    Rotary::GetInstance().AddCallback(object, priority, callback, data);
    return EINA_TRUE;
}
catch (const std::bad_alloc&)
{
    return PORT_REFUSE(EINA_FALSE, __func__, "out of memory");
}

void* eext_rotary_object_event_callback_del(Evas_Object* object, Eext_Rotary_Event_Cb callback)
{
    if (!IsGiven(object, __func__, kNoObject) || !IsGiven(callback, __func__, kNoCallback))
        return nullptr;
    return Rotary::GetInstance().RemoveCallback(object, callback);
}

void eext_rotary_object_event_activated_set(Evas_Object* object, Eina_Bool activated)
{
    if (!IsGiven(object, __func__, kNoObject))
        return;
    if (activated)
        Rotary::GetInstance().Activate(object);
    else
        Rotary::GetInstance().Deactivate(object);
}
