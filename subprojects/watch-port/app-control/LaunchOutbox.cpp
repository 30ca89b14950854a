#include "app-control/LaunchOutbox.h"

#include "app-control/messages/ExtraData.h"
#include "app-control/messages/LaunchInterface.h"
#include "app-control/messages/RequestWriter.h"
#include "base/ApplicationCalls.h"
#include "dlog/PortLog.h"

#include <algorithm>
#include <new>

namespace WatchPort
{

namespace
{
// What applications answer that have no interface but the desktop's.
bool IsUnknownMethod(DBusMessage* answer)
{
    return dbus_message_is_error(answer, DBUS_ERROR_UNKNOWN_METHOD) ||
           dbus_message_is_error(answer, DBUS_ERROR_UNKNOWN_INTERFACE) ||
           dbus_message_is_error(answer, DBUS_ERROR_UNKNOWN_OBJECT);
}

const char* ReadReason(DBusMessage* error)
{
    const char* text = nullptr;
    return dbus_message_get_args(error, nullptr, DBUS_TYPE_STRING, &text, DBUS_TYPE_INVALID)
               ? text
               : dbus_message_get_error_name(error);
}
} // namespace

LaunchOutbox::LaunchOutbox(BusConnection& bus) : mBus(bus)
{
    mBus.FollowLoop();
    RequireMemory(dbus_connection_add_filter(mBus.Get(), SMessageCB, this, nullptr));
}

LaunchOutbox::~LaunchOutbox()
{
    dbus_connection_remove_filter(mBus.Get(), SMessageCB, this);
}

bool LaunchOutbox::Send(const LaunchRequest& request, app_control_reply_cb callback, void* userData)
{
    std::list<Entry> sent;
    sent.push_back({*this, request, callback, userData, callback != nullptr, nullptr});
    if (!Post(sent.front()))
        return false;
    mSent.splice(mSent.end(), sent);
    return true;
}

bool LaunchOutbox::Post(Entry& entry)
{
    entry.answer = mBus.Call(entry.isReplyWanted ? RequestWriter::WriteLaunch(entry.request)
                                                 : RequestWriter::WriteForDesktop(entry.request),
                             kReplyPatience, SAnswerCB, &entry);
    return entry.answer != nullptr;
}

void LaunchOutbox::SAnswerCB(DBusPendingCall* pending, void* data)
{
    auto& entry = *static_cast<Entry*>(data);
    const BusMessage answer(dbus_pending_call_steal_reply(pending));
    entry.outbox.mBus.WithinCallback([&] { entry.outbox.OnAnswer(entry, answer.get()); });
}

void LaunchOutbox::OnAnswer(Entry& entry, DBusMessage* answer)
{
    Outcome outcome;
    try
    {
        if (entry.isReplyWanted && IsUnknownMethod(answer))
        {
            entry.isReplyWanted = false;
            if (Post(entry))
                return;
        }
        outcome = ReadAnswer(answer, entry.isReplyWanted);
    }
    catch (const std::bad_alloc&)
    {
        outcome.failure = "out of memory";
    }
    std::list<Entry> told;
    told.splice(told.end(), mSent,
                std::find_if(mSent.begin(), mSent.end(),
                             [&](const Entry& sent) { return &sent == &entry; }));
    Tell(entry, std::move(outcome));
}

LaunchOutbox::Outcome LaunchOutbox::ReadAnswer(DBusMessage* answer, bool isReplyWanted)
{
    if (dbus_message_get_type(answer) == DBUS_MESSAGE_TYPE_ERROR)
        return {APP_CONTROL_RESULT_FAILED, ReadReason(answer), std::nullopt};
    if (isReplyWanted)
        return ReadReply(answer);
    return {APP_CONTROL_RESULT_SUCCEEDED, nullptr, std::nullopt};
}

LaunchOutbox::Outcome LaunchOutbox::ReadReply(DBusMessage* reply)
{
    DBusMessageIter iter;
    if (!dbus_message_has_signature(reply, "ia{ss}") || !dbus_message_iter_init(reply, &iter))
        return {APP_CONTROL_RESULT_FAILED, "the reply is malformed", std::nullopt};
    dbus_int32_t result = 0;
    dbus_message_iter_get_basic(&iter, &result);
    dbus_message_iter_next(&iter);
    Outcome outcome;
    if (!ReadExtraData(Enter(&iter), outcome.reply.emplace().extraData))
        return {APP_CONTROL_RESULT_FAILED, kTooBig, std::nullopt};
    if (result == 0)
        outcome.result = APP_CONTROL_RESULT_SUCCEEDED;
    return outcome;
}

void LaunchOutbox::Tell(Entry& entry, Outcome outcome)
{
    if (outcome.failure)
        PORT_LOG_WARN("launch request to \"%s\" failed: %s", entry.request.appId.c_str(),
                      outcome.failure);
    if (entry.callback && MayCallApplication())
        entry.callback(&entry.request, outcome.reply ? &*outcome.reply : nullptr, outcome.result,
                       entry.userData);
}

// The bus library forgets calls without an answer when the bus has gone.
DBusHandlerResult LaunchOutbox::SMessageCB(DBusConnection*, DBusMessage* message, void* data)
{
    auto* self = static_cast<LaunchOutbox*>(data);
    if (dbus_message_is_signal(message, DBUS_INTERFACE_LOCAL, "Disconnected"))
        self->mBus.WithinCallback([=] { self->OnDisconnected(); });
    return DBUS_HANDLER_RESULT_NOT_YET_HANDLED;
}

void LaunchOutbox::OnDisconnected()
{
    std::list<Entry> told;
    told.swap(mSent);
    for (Entry& entry : told)
        Tell(entry, {APP_CONTROL_RESULT_FAILED, "the session bus has gone", std::nullopt});
}

} // namespace WatchPort
