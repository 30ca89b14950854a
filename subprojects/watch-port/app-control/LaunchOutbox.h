#ifndef WATCH_PORT_APP_CONTROL_LAUNCH_OUTBOX_H
#define WATCH_PORT_APP_CONTROL_LAUNCH_OUTBOX_H

#include "app-control/LaunchRequest.h"
#include "bus/BusConnection.h"

#include <list>
#include <optional>

namespace WatchPort
{

/**
 * The launch requests that went out over a bus, each until its callback has got the outcome.
 *
 * A request that wants a reply is sent again through the desktop's interface to an application that
 * has no other.
 */
class LaunchOutbox
{
public:
    /** @param bus Outlives the object. Its messages come by the main loop from now on. */
    explicit LaunchOutbox(BusConnection& bus);
    ~LaunchOutbox();
    LaunchOutbox(const LaunchOutbox&) = delete;
    LaunchOutbox& operator=(const LaunchOutbox&) = delete;

    /**
     * Sends a request, which must have an application id and not be too big.
     *
     * @param callback Called once by the main loop, as app_control_send_launch_request() describes;
     *        null: a failure is one warning.
     * @param userData Passed to the callback.
     * @return False when the bus has gone; the callback is not called then.
     */
    bool Send(const LaunchRequest& request, app_control_reply_cb callback, void* userData);

private:
    struct Entry
    {
        LaunchOutbox& outbox;
        LaunchRequest request;
        app_control_reply_cb callback;
        void* userData;
        bool isReplyWanted;
        BusPending answer;
    };

    // What the callback gets. The reason of a failure is part of the answer.
    struct Outcome
    {
        app_control_result_e result = APP_CONTROL_RESULT_FAILED;
        const char* failure = nullptr;
        std::optional<LaunchRequest> reply;
    };

    static void SAnswerCB(DBusPendingCall* pending, void* data);
    static DBusHandlerResult SMessageCB(DBusConnection* connection, DBusMessage* message,
                                        void* data);
    static Outcome ReadAnswer(DBusMessage* answer, bool isReplyWanted);
    static Outcome ReadReply(DBusMessage* reply);
    static void Tell(Entry& entry, Outcome outcome);

    bool Post(Entry& entry);
    void OnAnswer(Entry& entry, DBusMessage* answer);
    void OnDisconnected();

    BusConnection& mBus;
    std::list<Entry> mSent;
};

} // namespace WatchPort

#endif
