#ifndef WATCH_PORT_APP_CONTROL_LAUNCH_SENDER_H
#define WATCH_PORT_APP_CONTROL_LAUNCH_SENDER_H

#include "bus/BusConnection.h"

struct app_control_s;

namespace WatchPort
{

/**
 * Who sent a request that came over the bus: the answer that he is still to get.
 *
 * The call is not kept, for the bus library reads no more while 63 MiB of what it has read are.
 */
class LaunchSender
{
public:
    enum class Wish
    {
        Receipt, /**< To know that the request has been received. */
        Reply,   /**< To get the application's own reply. */
    };

    /**
     * @param bus Outlives the object.
     * @param call One that wants no answer gets none, and its sender has no wish.
     */
    LaunchSender(BusConnection& bus, DBusMessage* call, Wish wish);
    LaunchSender(const LaunchSender&) = delete;
    LaunchSender& operator=(const LaunchSender&) = delete;

    bool WishesReply() const { return mWish == Wish::Reply && mIsAnswerWanted; }
    bool IsAnswered() const { return mAnswer == nullptr; }

    /** Tells whether the answer can still be sent: the sender has gone with the bus. */
    bool IsThere() const { return mBus.IsConnected(); }

    /** Answers with nothing. */
    void SendReceipt();

    /** Answers with a result and extra data. */
    void SendReply(const app_control_s& reply, int result);

private:
    BusConnection& mBus;
    const Wish mWish;
    const bool mIsAnswerWanted;
    BusMessage mAnswer;
};

} // namespace WatchPort

#endif
