#ifndef WATCH_PORT_APP_CONTROL_SINGLE_INSTANCE_H
#define WATCH_PORT_APP_CONTROL_SINGLE_INSTANCE_H

#include "app-control/LaunchInbox.h"

#include <memory>
#include <string>

namespace WatchPort
{

/** Makes the process the only one of its application on the session bus, as app.h describes. */
class SingleInstance
{
public:
    enum class Standing
    {
        Alone,     /**< Without a name on the bus: no id, or no bus that answers. */
        Owner,     /**< Requests arrive in Inbox(). */
        Forwarded, /**< Another process runs, and has the request, if there was one. */
        NotTaken,  /**< Another process runs, and did not take the request. */
    };

    /**
     * Asks for the application's name on the bus.
     *
     * @param request Goes to the process that has the name; null: none, for the bus started this
     *        process.
     */
    SingleInstance(const std::string& applicationId, const LaunchRequest* request);

    Standing GetStanding() const { return mStanding; }

    /** Null unless the process is the owner. */
    LaunchInbox* Inbox() const { return mInbox.get(); }

private:
    static Standing Settle(BusConnection& bus, const std::string& id, const LaunchRequest* request);
    static bool Forward(BusConnection& bus, const std::string& id, LaunchRequest request);

    std::unique_ptr<LaunchInbox> mInbox;
    Standing mStanding = Standing::Alone;
};

} // namespace WatchPort

#endif
