#ifndef WATCH_PORT_SUPPORT_BUS_PROPERTY_H
#define WATCH_PORT_SUPPORT_BUS_PROPERTY_H

#include <Eldbus.h>
#include <functional>
#include <memory>

/** Where a property is found on the system bus, and the type that it must have. */
struct BusPropertyAddress
{
    const char* mService;
    const char* mPath;
    const char* mInterface;
    const char* mProperty;
    const char* mSignature;
};

/**
 * One property of a system service, followed while the service comes, restarts and goes.
 *
 * The property is read once at the beginning and each time the service appears, and then follows
 * the service's PropertiesChanged. A service that the bus can start is started by the first read
 * and by nothing after it, so one that ends when idle may do so.
 *
 * Messages are not trusted: those of another sender, shape or type are passed over in silence.
 *
 * Both callbacks come from the main loop, never from inside a call of this class, and may delete
 * the object that calls them.
 */
class BusProperty
{
public:
    /** Gets the value, of the address's type, at every reading: also when it is the old one. */
    using ValueCallback = std::function<void(Eldbus_Message_Iter* value)>;

    /** Told that nobody gives the value (any more): no such service, or the bus has gone. */
    using GoneCallback = std::function<void()>;

    /**
     * Begins to follow a property. The address's texts must outlive the result.
     *
     * @return Null when there is no system bus; nothing is logged then.
     */
    static std::unique_ptr<BusProperty> Follow(const BusPropertyAddress& address,
                                               ValueCallback onValue, GoneCallback onGone);

    /**
     * Reads a property now, at most for timeoutMs milliseconds. Without a bus, or a service of
     * that name that runs or can be started, it returns at once.
     *
     * @return Whether `take` was called with a value of the address's type.
     */
    static bool Read(const BusPropertyAddress& address, double timeoutMs,
                     const ValueCallback& take);

    ~BusProperty();
    BusProperty(const BusProperty&) = delete;
    BusProperty& operator=(const BusProperty&) = delete;

private:
    BusProperty(Eldbus_Connection* bus, const BusPropertyAddress& address, ValueCallback onValue,
                GoneCallback onGone);

    void Ask();
    void OnPropertiesChanged(const Eldbus_Message* message);
    void TellValue(Eldbus_Message_Iter* value);
    void TellGone();

    static void SOwnerChangedCB(void* data, const char* service, const char* before,
                                const char* now);
    static void SReplyCB(void* data, const Eldbus_Message* reply, Eldbus_Pending* pending);
    static void SPropertiesChangedCB(void* data, const Eldbus_Message* message);
    static void SDisconnectedCB(void* data, Eldbus_Connection* bus, void* event);

    Eldbus_Connection* mBus;
    const BusPropertyAddress mAddress;
    const ValueCallback mOnValue;
    const GoneCallback mOnGone;
    Eldbus_Signal_Handler* mChanges = nullptr;
    Eldbus_Pending* mQuestion = nullptr;
};

#endif
