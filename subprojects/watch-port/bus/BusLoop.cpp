#include "bus/BusLoop.h"

#include <algorithm>

namespace WatchPort
{

namespace
{
constexpr double kMillisecond = 0.001;
} // namespace

BusLoop::BusLoop(DBusConnection* connection) : mConnection(connection)
{
    dbus_connection_set_watch_functions(mConnection, SAddWatchCB, SRemoveWatchCB, SToggleWatchCB,
                                        this, nullptr);
    dbus_connection_set_timeout_functions(mConnection, SAddTimeoutCB, SRemoveTimeoutCB,
                                          SToggleTimeoutCB, this, nullptr);
    dbus_connection_set_dispatch_status_function(mConnection, SDispatchStatusCB, this, nullptr);
    SDispatchStatusCB(mConnection, dbus_connection_get_dispatch_status(mConnection), this);
}

BusLoop::~BusLoop()
{
    dbus_connection_set_dispatch_status_function(mConnection, nullptr, nullptr, nullptr);
    dbus_connection_set_timeout_functions(mConnection, nullptr, nullptr, nullptr, nullptr, nullptr);
    dbus_connection_set_watch_functions(mConnection, nullptr, nullptr, nullptr, nullptr, nullptr);
    if (mJob)
        ecore_job_del(mJob);
}

dbus_bool_t BusLoop::SAddWatchCB(DBusWatch* watch, void* data)
{
    auto* self = static_cast<BusLoop*>(data);
    self->mWatches.push_back(watch);
    if (!self->mHandler)
        self->mHandler = ecore_main_fd_handler_add(dbus_watch_get_unix_fd(watch), ECORE_FD_ERROR,
                                                   SReadyCB, self, nullptr, nullptr);
    self->Refresh();
    return self->mHandler != nullptr;
}

void BusLoop::SRemoveWatchCB(DBusWatch* watch, void* data)
{
    auto* self = static_cast<BusLoop*>(data);
    self->mWatches.erase(std::remove(self->mWatches.begin(), self->mWatches.end(), watch),
                         self->mWatches.end());
    if (self->mWatches.empty() && self->mHandler)
    {
        ecore_main_fd_handler_del(self->mHandler);
        self->mHandler = nullptr;
    }
    self->Refresh();
}

void BusLoop::SToggleWatchCB(DBusWatch*, void* data)
{
    static_cast<BusLoop*>(data)->Refresh();
}

bool BusLoop::Has(DBusWatch* watch) const
{
    return std::find(mWatches.begin(), mWatches.end(), watch) != mWatches.end();
}

void BusLoop::Refresh()
{
    if (!mHandler)
        return;
    int wanted = ECORE_FD_ERROR;
    for (DBusWatch* watch : mWatches)
    {
        const unsigned flags = dbus_watch_get_enabled(watch) ? dbus_watch_get_flags(watch) : 0;
        wanted |= (flags & DBUS_WATCH_READABLE) != 0 ? ECORE_FD_READ : 0;
        wanted |= (flags & DBUS_WATCH_WRITABLE) != 0 ? ECORE_FD_WRITE : 0;
    }
    ecore_main_fd_handler_active_set(mHandler, static_cast<Ecore_Fd_Handler_Flags>(wanted));
}

Eina_Bool BusLoop::SReadyCB(void* data, Ecore_Fd_Handler* handler)
{
    const auto* self = static_cast<BusLoop*>(data);
    unsigned ready = 0;
    if (ecore_main_fd_handler_active_get(handler, ECORE_FD_READ))
        ready |= DBUS_WATCH_READABLE;
    if (ecore_main_fd_handler_active_get(handler, ECORE_FD_WRITE))
        ready |= DBUS_WATCH_WRITABLE;
    if (ecore_main_fd_handler_active_get(handler, ECORE_FD_ERROR))
        ready |= DBUS_WATCH_ERROR;
    // A connection that ends removes its watches.
    for (DBusWatch* watch : std::vector<DBusWatch*>(self->mWatches))
    {
        if (self->Has(watch) && dbus_watch_get_enabled(watch))
            dbus_watch_handle(watch, ready);
    }
    return ECORE_CALLBACK_RENEW;
}

dbus_bool_t BusLoop::SAddTimeoutCB(DBusTimeout* timeout, void*)
{
    if (!dbus_timeout_get_enabled(timeout))
        return true;
    Ecore_Timer* timer =
        ecore_timer_add(dbus_timeout_get_interval(timeout) * kMillisecond, STimeoutCB, timeout);
    dbus_timeout_set_data(timeout, timer, nullptr);
    return timer != nullptr;
}

void BusLoop::SRemoveTimeoutCB(DBusTimeout* timeout, void*)
{
    auto* timer = static_cast<Ecore_Timer*>(dbus_timeout_get_data(timeout));
    dbus_timeout_set_data(timeout, nullptr, nullptr);
    if (timer)
        ecore_timer_del(timer);
}

void BusLoop::SToggleTimeoutCB(DBusTimeout* timeout, void* data)
{
    SRemoveTimeoutCB(timeout, data);
    SAddTimeoutCB(timeout, data);
}

// The bus library removes the timeout when it wants no other.
Eina_Bool BusLoop::STimeoutCB(void* data)
{
    dbus_timeout_handle(static_cast<DBusTimeout*>(data));
    return ECORE_CALLBACK_RENEW;
}

void BusLoop::SDispatchStatusCB(DBusConnection*, DBusDispatchStatus status, void* data)
{
    auto* self = static_cast<BusLoop*>(data);
    if (status == DBUS_DISPATCH_DATA_REMAINS && !self->mJob && !self->mIsDispatching)
        self->mJob = ecore_job_add(SDispatchJob, self);
}

void BusLoop::SDispatchJob(void* data)
{
    auto* self = static_cast<BusLoop*>(data);
    self->mJob = nullptr;
    if (!self->mIsDispatching)
        self->Dispatch();
}

void BusLoop::Dispatch()
{
    mIsDispatching = true;
    while (dbus_connection_dispatch(mConnection) == DBUS_DISPATCH_DATA_REMAINS)
        ;
    mIsDispatching = false;
}

} // namespace WatchPort
