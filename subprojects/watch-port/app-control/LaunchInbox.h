#ifndef WATCH_PORT_APP_CONTROL_LAUNCH_INBOX_H
#define WATCH_PORT_APP_CONTROL_LAUNCH_INBOX_H

#include "app-control/AppControl.h"

#include <array>
#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <string>

/** The port's own interface beside org.freedesktop.Application, for requests with a reply. */
constexpr char kLaunchInterface[] = "org.watchport.Launch1";

/** How long a sender waits for an application's reply. */
constexpr double kReplySeconds = 25;

/**
 * The object of an application on the session bus, and the launch requests that came to it.
 *
 * It offers org.freedesktop.Application and org.watchport.Launch1 as app.h describes. A request
 * is kept until it is taken. Requests that are malformed or too big, and those that want a reply
 * when kMostWaiting others do, are answered with an error and do not arrive.
 */
class LaunchInbox
{
public:
    static constexpr size_t kMostWaiting = 256;

    /** @param bus Outlives the object. Calls are read by the main loop, never before. */
    LaunchInbox(Eldbus_Connection* bus, const std::string& applicationId);
    ~LaunchInbox();
    LaunchInbox(const LaunchInbox&) = delete;
    LaunchInbox& operator=(const LaunchInbox&) = delete;

    bool IsEmpty() const { return mArrived.empty(); }

    /**
     * Hands over the request that came first; there must be one. Its sender is told when
     * `receive` has returned, or, when he wants a reply, by the reply.
     */
    void HandOver(const std::function<void(app_control_h)>& receive);

    /** Destroys the requests that have got their reply, and those whose sender waits no more. */
    void ReleaseWaiting();

private:
    struct Waiting
    {
        std::unique_ptr<app_control_s> request;
        double since;
    };

    static Eldbus_Message* SActivateCB(void* data, const Eldbus_Service_Interface* interface,
                                       const Eldbus_Message* call);
    static Eldbus_Message* SOpenCB(void* data, const Eldbus_Service_Interface* interface,
                                   const Eldbus_Message* call);
    static Eldbus_Message* SActivateActionCB(void* data, const Eldbus_Service_Interface* interface,
                                             const Eldbus_Message* call);
    static Eldbus_Message* SLaunchCB(void* data, const Eldbus_Service_Interface* interface,
                                     const Eldbus_Message* call);
    static void SDisconnectedCB(void* data, Eldbus_Connection* bus, void* event);

    Eldbus_Method2 NewMethod(const char* member, const Eldbus_Arg_Info* in,
                             const Eldbus_Arg_Info* out, Eldbus_Method_Data_Cb callback);
    void OfferApplication(const std::string& path);
    void OfferLaunch(const std::string& path);
    Eldbus_Message* Accept(const Eldbus_Message* call, std::unique_ptr<app_control_s> request,
                           LaunchSender::Wish wish, const char* usage);
    size_t CountWaiting() const;

    Eldbus_Connection* const mBus;
    // The bus library keeps pointers into these; the last element of each ends it.
    std::array<Eldbus_Method2, 4> mApplicationMethods = {};
    std::array<Eldbus_Method2, 2> mLaunchMethods = {};
    Eldbus_Service_Interface* mApplication = nullptr;
    Eldbus_Service_Interface* mLaunch = nullptr;
    std::deque<std::unique_ptr<app_control_s>> mArrived;
    std::list<Waiting> mWaiting;
};

#endif
