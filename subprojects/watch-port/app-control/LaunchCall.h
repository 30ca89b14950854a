#ifndef WATCH_PORT_APP_CONTROL_LAUNCH_CALL_H
#define WATCH_PORT_APP_CONTROL_LAUNCH_CALL_H

#include "app-control/LaunchRequest.h"
#include "bus/BusConnection.h"

namespace WatchPort
{

/**
 * The call that brought a request over the bus, and the answer that its sender is still to get.
 *
 * The message itself is not kept, for the bus library reads no more while 63 MiB of what it has
 * read are.
 */
class LaunchCall
{
public:
    /** What the sender wants to get. */
    enum class Wish
    {
        Receipt, /**< To know that the request has been received. */
        Reply,   /**< The application's own reply. */
    };

    /**
     * @param bus Outlives the object.
     * @param call One that wants no answer gets none, and its sender has no wish.
     */
    LaunchCall(BusConnection& bus, DBusMessage* call, Wish wish);
    LaunchCall(const LaunchCall&) = delete;
    LaunchCall& operator=(const LaunchCall&) = delete;

    bool WishesReply() const { return mWish == Wish::Reply && mIsAnswerWanted; }
    bool IsAnswered() const { return !mAnswer; }

    /** Tells whether the answer can still be sent: the sender has gone with the bus. */
    bool IsThere() const { return mBus.IsConnected(); }

    /** Answers with nothing. Without memory for that, one error line. */
    void SendReceipt();

    /** Answers with a result and extra data. After an exception it can be tried again. */
    void SendReply(const LaunchRequest& reply, int result);

private:
    BusConnection& mBus;
    const Wish mWish;
    const bool mIsAnswerWanted;
    BusMessage mAnswer;
};

} // namespace WatchPort

#endif
