#ifndef WATCH_PORT_BUS_BUS_LOOP_H
#define WATCH_PORT_BUS_BUS_LOOP_H

#include <Ecore.h>
#include <dbus/dbus.h>
#include <exception>
#include <utility>
#include <vector>

namespace WatchPort
{

/**
 * While it lives, Ecore's main loop reads and writes a connection, dispatches its messages and
 * times its calls.
 *
 * An event of the loop dispatches the messages one after the other, never from inside a call of the
 * bus library, and not in a loop that runs within the dispatch of another message. A turn of the
 * loop dispatches for some milliseconds at most, and draws before the next messages.
 */
class BusLoop
{
public:
    /**
     * @param connection Must outlive the object.
     * @throw std::bad_alloc The loop does not follow the connection.
     */
    explicit BusLoop(DBusConnection* connection);
    ~BusLoop();
    BusLoop(const BusLoop&) = delete;
    BusLoop& operator=(const BusLoop&) = delete;

    /** Throws an exception of a callback on, once the bus library has returned from it. */
    void ThrowLater(std::exception_ptr exception) { mThrown = std::move(exception); }

private:
    static dbus_bool_t SAddWatchCB(DBusWatch* watch, void* data);
    static void SRemoveWatchCB(DBusWatch* watch, void* data);
    static void SToggleWatchCB(DBusWatch* watch, void* data);
    static Eina_Bool SReadyCB(void* data, Ecore_Fd_Handler* handler);

    static dbus_bool_t SAddTimeoutCB(DBusTimeout* timeout, void* data);
    static void SRemoveTimeoutCB(DBusTimeout* timeout, void* data);
    static void SToggleTimeoutCB(DBusTimeout* timeout, void* data);
    static Eina_Bool STimeoutCB(void* data);

    static void SDispatchStatusCB(DBusConnection* connection, DBusDispatchStatus status,
                                  void* data);
    static void SDispatchJob(void* data);

    void Refresh();
    void Detach();
    void Dispatch();

    DBusConnection* const mConnection;
    // One to read and one to write, for the same descriptor.
    std::vector<DBusWatch*> mWatches;
    Ecore_Fd_Handler* mHandler = nullptr;
    Ecore_Job* mJob = nullptr;
    bool mIsDispatching = false;
    std::exception_ptr mThrown;
};

} // namespace WatchPort

#endif
