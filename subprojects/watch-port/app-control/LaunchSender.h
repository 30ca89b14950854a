#ifndef WATCH_PORT_APP_CONTROL_LAUNCH_SENDER_H
#define WATCH_PORT_APP_CONTROL_LAUNCH_SENDER_H

#include <Eldbus.h>

struct app_control_s;

/** Who sent a request that came over the bus: the call that is still to be answered. */
class LaunchSender
{
public:
    enum class Wish
    {
        Receipt, /**< To know that the request has been received. */
        Reply,   /**< To get the application's own reply. */
    };

    LaunchSender(Eldbus_Connection* bus, const Eldbus_Message* call, Wish wish);
    ~LaunchSender();
    LaunchSender(const LaunchSender&) = delete;
    LaunchSender& operator=(const LaunchSender&) = delete;

    bool WishesReply() const { return mWish == Wish::Reply; }
    bool IsAnswered() const { return mIsAnswered; }

    /** Tells whether the answer can still be sent. */
    bool IsThere() const { return mBus != nullptr; }

    /** The bus has gone, and the sender with it. */
    void Forget() { mBus = nullptr; }

    /** Answers with nothing. */
    void SendReceipt();

    /** Answers with a result and extra data. */
    void SendReply(const app_control_s& reply, int result);

private:
    void Send(Eldbus_Message* answer);

    Eldbus_Connection* mBus;
    Eldbus_Message* const mCall;
    const Wish mWish;
    bool mIsAnswered = false;
};

#endif
