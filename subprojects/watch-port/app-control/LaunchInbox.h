#ifndef WATCH_PORT_APP_CONTROL_LAUNCH_INBOX_H
#define WATCH_PORT_APP_CONTROL_LAUNCH_INBOX_H

#include "app-control/LaunchRequest.h"
#include "bus/BusConnection.h"

#include <Ecore.h>
#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <utility>

namespace WatchPort
{

/**
 * The object of an application on the session bus, and the launch requests that came to it.
 *
 * It offers org.freedesktop.Application and org.watchport.Launch1 as app.h describes, and
 * org.watchport.Theme1, whose Reload() loads the application's themes again. A request
 * is kept until it is taken, and one that wants a reply until it has got it or its sender waits no
 * more. Requests that are malformed, or too big alone or together with those that are kept, and
 * those that want a reply when kMostWaiting others do, are answered with an error and do not
 * arrive.
 */
class LaunchInbox
{
public:
    static constexpr size_t kMostWaiting = 256;

    /** How much memory those that are kept may take. */
    static constexpr size_t kMostBytes = size_t{16} * 1024 * 1024;

    /**
     * @param bus Outlives the object. The bus delivers the calls that it started the application
     * for before it says who owns the name, so this object must exist before the name is taken.
     */
    LaunchInbox(BusConnection& bus, const std::string& applicationId);
    ~LaunchInbox();
    LaunchInbox(const LaunchInbox&) = delete;
    LaunchInbox& operator=(const LaunchInbox&) = delete;

    /**
     * @param reload Called when somebody asks for the application's themes to be loaded again;
     *               returns how many objects were. Until it is set, the request is refused.
     */
    void OnThemeReload(std::function<unsigned()> reload) { mReloadThemes = std::move(reload); }

    bool IsEmpty() const { return mArrived.empty(); }

    /**
     * Hands over the request that came first; there must be one. Its sender gets an answer when
     * `receive` has returned, or, if it wants a reply, with the reply.
     */
    void HandOver(const std::function<void(app_control_h)>& receive);

    /**
     * Destroys the requests that have got their reply, and those whose sender has stopped waiting.
     * A timer destroys the latter also without a call.
     */
    void ReleaseWaiting();

private:
    struct Entry
    {
        std::unique_ptr<LaunchRequest> request;
        size_t bytes;
        std::chrono::steady_clock::time_point since;
    };

    static DBusHandlerResult SMessageCB(DBusConnection* connection, DBusMessage* message,
                                        void* data);
    static Eina_Bool STimerCB(void* data);

    BusMessage Take(DBusMessage* call);
    BusMessage ReloadThemes(DBusMessage* call);
    BusMessage Keep(DBusMessage* call, std::unique_ptr<LaunchRequest> request);
    size_t CountWaiting() const;
    size_t CountBytes() const;

    BusConnection& mBus;
    const std::string mPath;
    std::function<unsigned()> mReloadThemes;
    std::list<Entry> mArrived;
    std::list<Entry> mWaiting;
    Ecore_Timer* mTimer = nullptr;
};

} // namespace WatchPort

#endif
