#ifndef WATCH_PORT_EFL_EXTENSION_EVENT_FILTER_H
#define WATCH_PORT_EFL_EXTENSION_EVENT_FILTER_H

#include <Ecore.h>
#include <Ecore_Eo.h>

namespace WatchPort
{

/**
 * A filter of the toolkit's events that stays until the toolkit ends.
 *
 * If a filter is deleted while events are filtered, Ecore frees it and goes on to call it, and
 * there is no way to ask whether events are being filtered. So a filter with nothing to do lets all
 * events pass.
 */
class EventFilter
{
public:
    EventFilter(Ecore_Filter_Cb callback, const void* data) : mCallback(callback), mData(data) {}
    EventFilter(const EventFilter&) = delete;
    EventFilter& operator=(const EventFilter&) = delete;

    /** @return false when it has already been added */
    bool Start();

private:
    static void SToolkitEndsCB(void* data, const Efl_Event* event);

    Ecore_Filter_Cb mCallback;
    const void* mData;
    Ecore_Event_Filter* mFilter = nullptr;
};

} // namespace WatchPort

#endif
