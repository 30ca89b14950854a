#include "app-control/LaunchInbox.h"

#include "app-control/ApplicationId.h"
#include "app-control/LaunchCall.h"
#include "app-control/messages/ExtraData.h"
#include "app-control/messages/LaunchInterface.h"
#include "app-control/messages/RequestReader.h"

#include <algorithm>
#include <new>
#include <numeric>

namespace WatchPort
{

namespace
{
using Clock = std::chrono::steady_clock;
using Request = std::unique_ptr<LaunchRequest>;

// What a request and an entry of its extra data take beside their texts, roughly.
constexpr size_t kRequestBytes = 1024;
constexpr size_t kEntryBytes = 128;

struct Method
{
    const char* interface;
    const char* member;
    RequestReader::Result (*read)(DBusMessage* call, LaunchRequest& request);
    LaunchCall::Wish wish;
    const char* usage;
};

constexpr Method kMethods[] = {
    {kApplicationInterface, "Activate", RequestReader::ReadActivate, LaunchCall::Wish::Receipt,
     "Activate takes a{sv}"},
    {kApplicationInterface, "Open", RequestReader::ReadOpen, LaunchCall::Wish::Receipt,
     "Open takes as, a{sv}"},
    {kApplicationInterface, "ActivateAction", RequestReader::ReadAction, LaunchCall::Wish::Receipt,
     "ActivateAction takes s, av with no or one a{sv}, a{sv}"},
    {kLaunchInterface, "Launch", RequestReader::ReadLaunch, LaunchCall::Wish::Reply,
     "Launch takes s, a{ss}"},
};

BusMessage NewError(DBusMessage* call, const char* error, const char* reason)
{
    BusMessage refusal(dbus_message_new_error(call, error, reason));
    RequireMemory(refusal != nullptr);
    return refusal;
}

BusMessage Introspect(DBusMessage* call)
{
    BusMessage answer(dbus_message_new_method_return(call));
    RequireMemory(answer != nullptr);
    DBusMessageIter iter;
    dbus_message_iter_init_append(answer.get(), &iter);
    AppendText(&iter, kIntrospection);
    return answer;
}

const Method* FindMethod(DBusMessage* call)
{
    const auto* const found =
        std::find_if(std::begin(kMethods), std::end(kMethods),
                     [call](const Method& method) {
                         return dbus_message_is_method_call(call, method.interface, method.member);
                     });
    return found == std::end(kMethods) ? nullptr : found;
}

size_t CountMemory(const LaunchRequest& request)
{
    return kRequestBytes + request.operation.size() + CountBytes(request.extraData) +
           kEntryBytes * request.extraData.size();
}
} // namespace

LaunchInbox::LaunchInbox(BusConnection& bus, const std::string& applicationId)
    : mBus(bus), mPath(ApplicationObjectPath(applicationId))
{
    static const DBusObjectPathVTable kTable = {nullptr, SMessageCB, nullptr,
                                                nullptr, nullptr,    nullptr};
    RequireMemory(dbus_connection_register_object_path(mBus.Get(), mPath.c_str(), &kTable, this));
}

LaunchInbox::~LaunchInbox()
{
    dbus_connection_unregister_object_path(mBus.Get(), mPath.c_str());
    if (mTimer)
        ecore_timer_del(mTimer);
}

void LaunchInbox::HandOver(const std::function<void(app_control_h)>& receive)
{
    std::list<Entry> received;
    received.splice(received.end(), mArrived, mArrived.begin());
    LaunchRequest& request = *received.front().request;
    receive(&request);
    if (!request.call->WishesReply())
        request.call->SendReceipt();
    else if (!request.call->IsAnswered())
        mWaiting.splice(mWaiting.end(), received);
    ReleaseWaiting();
}

void LaunchInbox::ReleaseWaiting()
{
    const Clock::time_point now = Clock::now();
    mWaiting.remove_if(
        [now](const Entry& waiting)
        { return waiting.request->call->IsAnswered() || now - waiting.since >= kReplyPatience; });
    if (mTimer && mWaiting.empty())
    {
        ecore_timer_del(mTimer);
        mTimer = nullptr;
    }
    if (!mTimer && !mWaiting.empty())
    {
        const std::chrono::duration<double> left = mWaiting.front().since + kReplyPatience - now;
        mTimer = ecore_timer_add(left.count(), STimerCB, this);
    }
}

Eina_Bool LaunchInbox::STimerCB(void* data)
{
    auto* const inbox = static_cast<LaunchInbox*>(data);
    inbox->mTimer = nullptr;
    inbox->ReleaseWaiting();
    return ECORE_CALLBACK_CANCEL;
}

size_t LaunchInbox::CountWaiting() const
{
    return mWaiting.size() +
           static_cast<size_t>(std::count_if(mArrived.begin(), mArrived.end(),
                                             [](const Entry& entry)
                                             { return entry.request->call->WishesReply(); }));
}

size_t LaunchInbox::CountBytes() const
{
    const auto add = [](size_t sum, const Entry& entry) { return sum + entry.bytes; };
    return std::accumulate(mWaiting.begin(), mWaiting.end(),
                           std::accumulate(mArrived.begin(), mArrived.end(), size_t{0}, add), add);
}

DBusHandlerResult LaunchInbox::SMessageCB(DBusConnection* connection, DBusMessage* message,
                                          void* data)
try
{
    if (dbus_message_get_type(message) != DBUS_MESSAGE_TYPE_METHOD_CALL)
        return DBUS_HANDLER_RESULT_NOT_YET_HANDLED;
    auto* const inbox = static_cast<LaunchInbox*>(data);
    BusMessage answer = inbox->Take(message);
    if (answer && !dbus_message_get_no_reply(message))
        inbox->mBus.Post(std::move(answer));
    return DBUS_HANDLER_RESULT_HANDLED;
}
catch (const std::bad_alloc&)
{
    // Asked for memory, the bus library would hand the message over again at once, and for ever.
    const BusMessage refusal(dbus_message_new_error(message, DBUS_ERROR_NO_MEMORY, "no memory"));
    if (refusal && !dbus_message_get_no_reply(message))
        dbus_connection_send(connection, refusal.get(), nullptr);
    return DBUS_HANDLER_RESULT_HANDLED;
}

// Returns the answer, or nothing when the application is to give it.
BusMessage LaunchInbox::Take(DBusMessage* call)
{
    if (dbus_message_is_method_call(call, DBUS_INTERFACE_INTROSPECTABLE, "Introspect"))
        return Introspect(call);
    if (dbus_message_is_method_call(call, kThemeInterface, "Reload"))
        return ReloadThemes(call);
    const Method* const method = FindMethod(call);
    if (!method)
        return NewError(call, DBUS_ERROR_UNKNOWN_METHOD, "no such method of a launch request");
    auto request = std::make_unique<LaunchRequest>();
    const RequestReader::Result result = method->read(call, *request);
    if (result == RequestReader::Result::Malformed)
        return NewError(call, DBUS_ERROR_INVALID_ARGS, method->usage);
    if (result == RequestReader::Result::TooBig || IsTooBig(*request))
        return NewError(call, DBUS_ERROR_LIMITS_EXCEEDED, kTooBig);
    request->call = std::make_shared<LaunchCall>(mBus, call, method->wish);
    return Keep(call, std::move(request));
}

BusMessage LaunchInbox::ReloadThemes(DBusMessage* call)
{
    if (!mReloadThemes)
        return NewError(call, DBUS_ERROR_FAILED, "the application shows nothing yet");
    const dbus_uint32_t objects = mReloadThemes();
    BusMessage answer(dbus_message_new_method_return(call));
    RequireMemory(answer && dbus_message_append_args(answer.get(), DBUS_TYPE_UINT32, &objects,
                                                     DBUS_TYPE_INVALID));
    return answer;
}

BusMessage LaunchInbox::Keep(DBusMessage* call, Request request)
{
    if (request->operation.empty())
        return NewError(call, DBUS_ERROR_INVALID_ARGS, "the operation is empty");
    if (request->call->WishesReply() && CountWaiting() >= kMostWaiting)
        return NewError(call, DBUS_ERROR_LIMITS_EXCEEDED, "too many requests wait for a reply");
    const size_t bytes = CountMemory(*request);
    if (CountBytes() + bytes > kMostBytes)
        return NewError(call, DBUS_ERROR_LIMITS_EXCEEDED, "more than 16 MiB of requests wait");
    mArrived.push_back({std::move(request), bytes, Clock::now()});
    return nullptr;
}

} // namespace WatchPort
