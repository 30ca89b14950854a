#ifndef WATCH_PORT_BUS_BUS_LISTENER_H
#define WATCH_PORT_BUS_BUS_LISTENER_H

#include "bus/BusConnection.h"

#include <string>

namespace WatchPort
{

/** Where a service gives a signal. */
struct BusSignalAddress
{
    const char* mService;
    const char* mPath;
    const char* mInterface;
    const char* mSignal;
};

/**
 * Listens to a service on a bus while it comes, restarts and goes: to one signal of it, and to the
 * answer of one question at a time.
 *
 * What OnAnswer() and OnSignal() are handed is of any shape. All four come from the main loop,
 * never from inside a call of this class, and may delete the object.
 */
class BusListener
{
public:
    virtual ~BusListener();
    BusListener(const BusListener&) = delete;
    BusListener& operator=(const BusListener&) = delete;

protected:
    /**
     * @param bus Outlives the object. Its messages come by the main loop from now on.
     * @param address Its texts must outlive the object.
     */
    BusListener(BusConnection& bus, const BusSignalAddress& address);

    /** Sends a question; one that is not yet answered is not listened for any more. */
    void Ask(BusMessage question);
    bool IsAsking() const { return mQuestion != nullptr; }

    /** A service has taken the name, from nobody or from another one. */
    virtual void OnAppeared() = 0;

    /** @param answer That of the last question, or an error. */
    virtual void OnAnswer(DBusMessage* answer) = 0;

    virtual void OnSignal(DBusMessage* signal) = 0;

    /** Nobody has the name any more, or the bus has gone. */
    virtual void OnGone() = 0;

private:
    static DBusHandlerResult SMessageCB(DBusConnection* connection, DBusMessage* message,
                                        void* data);
    static void SOwnerCB(DBusPendingCall* question, void* data);
    static void SAnswerCB(DBusPendingCall* question, void* data);

    void OnMessage(DBusMessage* message);
    void OnOwnerChanged(DBusMessage* message);

    BusConnection& mBus;
    const BusSignalAddress mAddress;
    const std::string mSignalRule;
    const std::string mOwnerRule;
    // Signals name their sender as the bus knows it: by a name that nobody else can take.
    std::string mOwner;
    BusPending mOwnerQuestion;
    BusPending mQuestion;
};

} // namespace WatchPort

#endif
