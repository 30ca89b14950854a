#ifndef WATCH_PORT_SUPPORT_BUS_LISTENER_H
#define WATCH_PORT_SUPPORT_BUS_LISTENER_H

#include <Eldbus.h>

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
    /** @param address Its texts must outlive the object. */
    BusListener(Eldbus_Connection* bus, const BusSignalAddress& address);

    /** Sends a question; one that is not yet answered is not listened for any more. */
    void Ask(Eldbus_Message* question);
    bool IsAsking() const { return mQuestion != nullptr; }

    /** A service has taken the name, from nobody or from another one. */
    virtual void OnAppeared() = 0;

    /** @param answer That of the last question, or an error. */
    virtual void OnAnswer(const Eldbus_Message* answer) = 0;

    virtual void OnSignal(const Eldbus_Message* signal) = 0;

    /** Nobody has the name any more, or the bus has gone. */
    virtual void OnGone() = 0;

private:
    void DropQuestion();

    static void SOwnerChangedCB(void* data, const char* service, const char* before,
                                const char* now);
    static void SAnswerCB(void* data, const Eldbus_Message* answer, Eldbus_Pending* pending);
    static void SSignalCB(void* data, const Eldbus_Message* signal);
    static void SDisconnectedCB(void* data, Eldbus_Connection* bus, void* event);

    Eldbus_Connection* const mBus;
    const char* const mService;
    Eldbus_Signal_Handler* mSignals = nullptr;
    Eldbus_Pending* mQuestion = nullptr;
};

#endif
