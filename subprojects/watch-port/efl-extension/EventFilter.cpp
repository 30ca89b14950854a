#include "efl-extension/EventFilter.h"

namespace WatchPort
{

bool EventFilter::Start()
{
    if (mFilter)
        return false;
    mFilter = ecore_event_filter_add(nullptr, mCallback, nullptr, mData);
    efl_event_callback_add(efl_main_loop_get(), EFL_APP_EVENT_TERMINATE, SToolkitEndsCB, this);
    return true;
}

void EventFilter::SToolkitEndsCB(void* data, const Efl_Event*)
{
    auto* self = static_cast<EventFilter*>(data);
    // The loop may go on, and the filter be started again.
    efl_event_callback_del(efl_main_loop_get(), EFL_APP_EVENT_TERMINATE, SToolkitEndsCB, self);
    ecore_event_filter_del(self->mFilter);
    self->mFilter = nullptr;
}

} // namespace WatchPort
