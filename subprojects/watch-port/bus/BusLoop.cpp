#include "bus/BusLoop.h"

#include "bus/BusMessage.h"

#include <algorithm>
#include <chrono>
#include <new>

namespace WatchPort
{

namespace
{
using Clock = std::chrono::steady_clock;

constexpr double kMillisecond = 0.001;

// Half of the time between two frames.
constexpr std::chrono::milliseconds kTurnPatience(8);
} // namespace

BusLoop::BusLoop(DBusConnection* connection) : mConnection(connection)
{
    const bool isAttached =
        dbus_connection_set_watch_functions(mConnection, SAddWatchCB, SRemoveWatchCB,
                                            SToggleWatchCB, this, nullptr) &&
        dbus_connection_set_timeout_functions(mConnection, SAddTimeoutCB, SRemoveTimeoutCB,
                                              SToggleTimeoutCB, this, nullptr);
    if (!isAttached)
        Detach();
    RequireMemory(isAttached);
    dbus_connection_set_dispatch_status_function(mConnection, SDispatchStatusCB, this, nullptr);
    SDispatchStatusCB(mConnection, dbus_connection_get_dispatch_status(mConnection), this);
}

BusLoop::~BusLoop()
{
    dbus_connection_set_dispatch_status_function(mConnection, nullptr, nullptr, nullptr);
    Detach();
    if (mJob)
        ecore_job_del(mJob);
}

void BusLoop::Detach()
{
    dbus_connection_set_timeout_functions(mConnection, nullptr, nullptr, nullptr, nullptr, nullptr);
    dbus_connection_set_watch_functions(mConnection, nullptr, nullptr, nullptr, nullptr, nullptr);
}

dbus_bool_t BusLoop::SAddWatchCB(DBusWatch* watch, void* data)
try
{
    auto* self = static_cast<BusLoop*>(data);
    // Room first: a handler that is there is not to fail for lack of it.
    self->mWatches.reserve(self->mWatches.size() + 1);
    if (!self->mHandler)
        self->mHandler = ecore_main_fd_handler_add(dbus_watch_get_unix_fd(watch), ECORE_FD_ERROR,
                                                   SReadyCB, self, nullptr, nullptr);
    if (!self->mHandler)
        return false;
    self->mWatches.push_back(watch);
    self->Refresh();
    return true;
}
catch (const std::bad_alloc&)
{
    return false;
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
    // By number: a connection that ends removes its watches.
    size_t next = 0;
    while (next < self->mWatches.size())
    {
        DBusWatch* const watch = self->mWatches[next++];
        if (dbus_watch_get_enabled(watch))
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
    const Clock::time_point end = Clock::now() + kTurnPatience;
    mIsDispatching = true;
    DBusDispatchStatus status = DBUS_DISPATCH_DATA_REMAINS;
    while (status == DBUS_DISPATCH_DATA_REMAINS && !mThrown && Clock::now() < end)
        status = dbus_connection_dispatch(mConnection);
    mIsDispatching = false;
    SDispatchStatusCB(mConnection, status, this);
    if (mThrown)
        std::rethrow_exception(std::exchange(mThrown, nullptr));
}

} // namespace WatchPort
