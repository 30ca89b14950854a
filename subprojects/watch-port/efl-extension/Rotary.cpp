#include "efl-extension/Rotary.h"

#include "base/ApplicationCalls.h"

#include <algorithm>

namespace WatchPort
{

namespace
{

constexpr int kVerticalWheel = 0;
constexpr int kMaxDetents = 100;

} // namespace

Rotary& Rotary::GetInstance()
{
    static Rotary instance;
    return instance;
}

void Rotary::AddCallback(Evas_Object* object, Evas_Callback_Priority priority,
                         Eext_Rotary_Event_Cb callback, void* data)
{
    mCallbacks.Add(object, priority, callback, data);
    mWheelFilter.Start();
}

void* Rotary::RemoveCallback(Evas_Object* object, Eext_Rotary_Event_Cb callback)
{
    return mCallbacks.Remove(object, callback);
}

void Rotary::Activate(Evas_Object* object)
{
    if (mActivated == object)
        return;
    if (mActivated)
        Deactivate(mActivated);
    mActivated = object;
    evas_object_event_callback_add(object, EVAS_CALLBACK_DEL, SActivatedDeletedCB, this);
    // A later deletion callback may activate the dying object once more.
    evas_object_event_callback_add(object, EVAS_CALLBACK_FREE, SActivatedDeletedCB, this);
    mWheelFilter.Start();
}

void Rotary::Deactivate(Evas_Object* object)
{
    if (mActivated != object)
        return;
    mActivated = nullptr;
    evas_object_event_callback_del_full(object, EVAS_CALLBACK_DEL, SActivatedDeletedCB, this);
    evas_object_event_callback_del_full(object, EVAS_CALLBACK_FREE, SActivatedDeletedCB, this);
}

void Rotary::SActivatedDeletedCB(void* data, Evas*, Evas_Object* object, void*)
{
    static_cast<Rotary*>(data)->Deactivate(object);
}

Eina_Bool Rotary::SWheelFilterCB(void* data, void*, int type, void* event)
{
    if (type != ECORE_EVENT_MOUSE_WHEEL)
        return EINA_TRUE;
    auto* self = static_cast<Rotary*>(data);
    if (!self->mActivated && self->mCallbacks.All().empty())
        return EINA_TRUE;
    self->Turn(*static_cast<Ecore_Event_Mouse_Wheel*>(event));
    return EINA_FALSE;
}

void Rotary::Turn(const Ecore_Event_Mouse_Wheel& wheel) const
{
    if (wheel.direction != kVerticalWheel)
        return;
    // The event may be gone before the last callback returns, if one runs the loop.
    Eext_Rotary_Event_Info detent{wheel.z > 0 ? EEXT_ROTARY_DIRECTION_CLOCKWISE
                                              : EEXT_ROTARY_DIRECTION_COUNTER_CLOCKWISE,
                                  wheel.timestamp};
    int count = std::abs(std::clamp(wheel.z, -kMaxDetents, kMaxDetents));
    for (; count > 0; --count)
        Deliver(detent);
}

void Rotary::Deliver(Eext_Rotary_Event_Info detent) const
{
    for (const auto& entry : mCallbacks.Of(mActivated))
    {
        if (entry->isRemoved || !MayCallApplication())
            continue;
        Eext_Rotary_Event_Info info = detent;
        if (entry->callback(entry->data, entry->object, &info))
            return;
    }
}

} // namespace WatchPort
