#ifndef WATCH_PORT_BUS_BUS_LISTENER_H
#define WATCH_PORT_BUS_BUS_LISTENER_H

#include "bus/BusConnection.h"

#include <string>

namespace WatchPort
{

/** Where a service emits a signal. */
struct BusSignalAddress
{
    const char* service;
    const char* path;
    const char* interface;
    const char* signal;
};

/**
 * Listens to a service on a bus while it starts, restarts and ends: to one signal, and to the
 * answer to one question at a time.
 *
 * OnAnswer() and OnSignal() may get messages of any shape. All four are called from the main loop,
 * never from inside a call of this class but TakeAnswer(), and may delete the object.
 */
class BusListener
{
public:
    virtual ~BusListener();
    BusListener(const BusListener&) = delete;
    BusListener& operator=(const BusListener&) = delete;

protected:
    /**
     * @param bus Must outlive the object. The main loop handles its messages from now on.
     * @param address Its texts must outlive the object.
     */
    BusListener(BusConnection& bus, const BusSignalAddress& address);

    /** Sends a question. The answer to an earlier one is no longer listened for. */
    void Ask(BusMessage question);
    bool IsAsking() const { return mQuestion != nullptr; }

    /**
     * Handles what the bus has sent, up to the answer to the last question, and waits for nothing.
     * OnAnswer() must not delete the object then.
     */
    void TakeAnswer();

    /** A service has taken the name, which was free or another one's. */
    virtual void OnAppeared() = 0;

    /** @param answer The answer to the last question, or an error. */
    virtual void OnAnswer(DBusMessage* answer) = 0;

    virtual void OnSignal(DBusMessage* signal) = 0;

    /** Nobody owns the name any more, or the bus has gone. */
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
    // Signals carry their sender's unique name, which nobody else can take.
    std::string mOwner;
    BusPending mOwnerQuestion;
    BusPending mQuestion;
};

} // namespace WatchPort

#endif
