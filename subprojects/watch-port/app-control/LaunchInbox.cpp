#include "app-control/LaunchInbox.h"

#include "app-control/ApplicationId.h"
#include "app-control/ExtraData.h"
#include "app-control/RequestReader.h"

#include <Ecore.h>
#include <algorithm>

namespace
{
using Request = std::unique_ptr<app_control_s>;

constexpr char kInvalidArguments[] = "org.freedesktop.DBus.Error.InvalidArgs";
constexpr char kLimitsExceeded[] = "org.freedesktop.DBus.Error.LimitsExceeded";

Eldbus_Message* Refuse(const Eldbus_Message* call, const char* error, const char* reason)
{
    return eldbus_message_error_new(call, error, reason);
}

void SNothingJob(void*)
{
}
} // namespace

LaunchInbox::LaunchInbox(Eldbus_Connection* bus, const std::string& applicationId) : mBus(bus)
{
    const std::string path = ApplicationObjectPath(applicationId);
    OfferApplication(path);
    OfferLaunch(path);
    eldbus_connection_event_callback_add(mBus, ELDBUS_CONNECTION_EVENT_DISCONNECTED,
                                         SDisconnectedCB, this);
}

LaunchInbox::~LaunchInbox()
{
    eldbus_connection_event_callback_del(mBus, ELDBUS_CONNECTION_EVENT_DISCONNECTED,
                                         SDisconnectedCB, this);
    eldbus_service_interface_unregister(mLaunch);
    eldbus_service_interface_unregister(mApplication);
}

Eldbus_Method2 LaunchInbox::NewMethod(const char* member, const Eldbus_Arg_Info* in,
                                      const Eldbus_Arg_Info* out, Eldbus_Method_Data_Cb callback)
{
    // The flag says that the callback takes data, and so is of another type than the field's.
    auto* const untyped = reinterpret_cast<void (*)()>(callback);
    return {
        {member, in, out, reinterpret_cast<Eldbus_Method_Cb>(untyped), ELDBUS_METHOD_FLAG_HAS_DATA},
        this};
}

void LaunchInbox::OfferApplication(const std::string& path)
{
    static const Eldbus_Arg_Info kActivate[] = {{"a{sv}", "platform_data"}, {nullptr, nullptr}};
    static const Eldbus_Arg_Info kOpen[] = {
        {"as", "uris"}, {"a{sv}", "platform_data"}, {nullptr, nullptr}};
    static const Eldbus_Arg_Info kAction[] = {
        {"s", "action_name"}, {"av", "parameter"}, {"a{sv}", "platform_data"}, {nullptr, nullptr}};
    mApplicationMethods = {NewMethod("Activate", kActivate, nullptr, SActivateCB),
                           NewMethod("Open", kOpen, nullptr, SOpenCB),
                           NewMethod("ActivateAction", kAction, nullptr, SActivateActionCB)};
    const Eldbus_Service_Interface_Desc2 description = {
        {"org.freedesktop.Application", nullptr, nullptr, nullptr, nullptr, nullptr},
        ELDBUS_INTERFACE_DESCRIPTOR_VERSION,
        mApplicationMethods.data()};
    mApplication = eldbus_service_interface_register2(mBus, path.c_str(), &description);
}

void LaunchInbox::OfferLaunch(const std::string& path)
{
    static const Eldbus_Arg_Info kIn[] = {
        {"s", "operation"}, {"a{ss}", "extra_data"}, {nullptr, nullptr}};
    static const Eldbus_Arg_Info kOut[] = {
        {"i", "result"}, {"a{ss}", "extra_data"}, {nullptr, nullptr}};
    mLaunchMethods = {NewMethod("Launch", kIn, kOut, SLaunchCB)};
    const Eldbus_Service_Interface_Desc2 description = {
        {kLaunchInterface, nullptr, nullptr, nullptr, nullptr, nullptr},
        ELDBUS_INTERFACE_DESCRIPTOR_VERSION,
        mLaunchMethods.data()};
    mLaunch = eldbus_service_interface_register2(mBus, path.c_str(), &description);
}

void LaunchInbox::HandOver(const std::function<void(app_control_h)>& receive)
{
    Request request = std::move(mArrived.front());
    mArrived.pop_front();
    receive(request.get());
    if (!request->sender->WishesReply())
        request->sender->SendReceipt();
    else if (!request->sender->IsAnswered())
        mWaiting.push_back({std::move(request), ecore_loop_time_get()});
}

void LaunchInbox::ReleaseWaiting()
{
    const double now = ecore_loop_time_get();
    mWaiting.remove_if(
        [now](const Waiting& waiting)
        { return waiting.request->sender->IsAnswered() || now - waiting.since > kReplySeconds; });
}

size_t LaunchInbox::CountWaiting() const
{
    return mWaiting.size() +
           static_cast<size_t>(std::count_if(mArrived.begin(), mArrived.end(),
                                             [](const Request& request)
                                             { return request->sender->WishesReply(); }));
}

Eldbus_Message* LaunchInbox::Accept(const Eldbus_Message* call, Request request,
                                    LaunchSender::Wish wish, const char* usage)
{
    if (!request)
        return Refuse(call, kInvalidArguments, usage);
    if (request->operation.empty())
        return Refuse(call, kInvalidArguments, "the operation is empty");
    if (IsTooBig(*request))
        return Refuse(call, kLimitsExceeded, "more than 1 MiB of text");
    if (wish == LaunchSender::Wish::Reply && CountWaiting() >= kMostWaiting)
        return Refuse(call, kLimitsExceeded, "too many requests wait for a reply");
    request->sender = std::make_shared<LaunchSender>(mBus, call, wish);
    mArrived.push_back(std::move(request));
    // A whole turn of the loop, at the end of which it is taken.
    ecore_job_add(SNothingJob, nullptr);
    return nullptr;
}

Eldbus_Message* LaunchInbox::SActivateCB(void* data, const Eldbus_Service_Interface*,
                                         const Eldbus_Message* call)
{
    return static_cast<LaunchInbox*>(data)->Accept(call, RequestReader::ReadActivate(call),
                                                   LaunchSender::Wish::Receipt,
                                                   "Activate takes a{sv}");
}

Eldbus_Message* LaunchInbox::SOpenCB(void* data, const Eldbus_Service_Interface*,
                                     const Eldbus_Message* call)
{
    return static_cast<LaunchInbox*>(data)->Accept(
        call, RequestReader::ReadOpen(call), LaunchSender::Wish::Receipt, "Open takes as, a{sv}");
}

Eldbus_Message* LaunchInbox::SActivateActionCB(void* data, const Eldbus_Service_Interface*,
                                               const Eldbus_Message* call)
{
    return static_cast<LaunchInbox*>(data)->Accept(
        call, RequestReader::ReadAction(call), LaunchSender::Wish::Receipt,
        "ActivateAction takes s, av with no or one a{sv}, a{sv}");
}

Eldbus_Message* LaunchInbox::SLaunchCB(void* data, const Eldbus_Service_Interface*,
                                       const Eldbus_Message* call)
{
    return static_cast<LaunchInbox*>(data)->Accept(
        call, RequestReader::ReadLaunch(call), LaunchSender::Wish::Reply, "Launch takes s, a{ss}");
}

void LaunchInbox::SDisconnectedCB(void* data, Eldbus_Connection*, void*)
{
    auto* inbox = static_cast<LaunchInbox*>(data);
    for (const Request& request : inbox->mArrived)
        request->sender->Forget();
    for (const Waiting& waiting : inbox->mWaiting)
        waiting.request->sender->Forget();
}
