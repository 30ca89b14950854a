#ifndef WATCH_PORT_BUS_BUS_PROPERTY_H
#define WATCH_PORT_BUS_BUS_PROPERTY_H

#include "bus/BusListener.h"

#include <chrono>
#include <functional>
#include <memory>

namespace WatchPort
{

/** Where a property is on the system bus, and the type that it must have. */
struct BusPropertyAddress
{
    const char* service;
    const char* path;
    const char* interface;
    const char* property;
    const char* signature;
};

/**
 * One property of a system service, followed while the service starts, restarts and ends.
 *
 * The property is read once at first and each time the service appears, and then follows the
 * service's PropertiesChanged. Only the first read may start the service, so a service that ends
 * when idle may do so.
 *
 * Messages are not trusted: those of another sender, shape or type are ignored silently.
 *
 * Both callbacks are called from the main loop, never from inside a call of this class, and may
 * delete the object that calls them.
 */
class BusProperty : private BusListener
{
public:
    /** Called with the value, of the address's type, at every reading, changed or not. */
    using ValueCallback = std::function<void(DBusMessageIter* value)>;

    /** Called when there is no value (any more): the service or the bus has gone. */
    using GoneCallback = std::function<void()>;

    /**
     * Starts following a property. The address's texts must outlive the result.
     *
     * @return Null if there is no system bus; nothing is logged then.
     */
    static std::unique_ptr<BusProperty> Follow(const BusPropertyAddress& address,
                                               ValueCallback onValue, GoneCallback onGone);

    /**
     * Reads a property now, over a connection of its own, and waits no longer than the patience; a
     * signal that ends the application ends the wait. Without a bus, or a service of that name that
     * runs or can be started, it returns at once.
     *
     * @return Whether `take` was called with a value of the address's type.
     */
    static bool Read(const BusPropertyAddress& address, std::chrono::milliseconds patience,
                     const ValueCallback& take);

private:
    BusProperty(BusConnection& bus, const BusPropertyAddress& address, ValueCallback onValue,
                GoneCallback onGone);

    void OnAppeared() override;
    void OnAnswer(DBusMessage* answer) override;
    void OnSignal(DBusMessage* signal) override;
    void OnGone() override;

    const BusPropertyAddress mAddress;
    const ValueCallback mOnValue;
    const GoneCallback mOnGone;
};

} // namespace WatchPort

#endif
