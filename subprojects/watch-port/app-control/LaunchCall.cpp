#include "app-control/LaunchCall.h"

#include "app-control/messages/ExtraData.h"
#include "dlog/PortLog.h"

#include <new>
#include <utility>

namespace WatchPort
{

LaunchCall::LaunchCall(BusConnection& bus, DBusMessage* call, Wish wish)
    : mBus(bus), mWish(wish), mIsAnswerWanted(!dbus_message_get_no_reply(call)),
      mAnswer(mIsAnswerWanted ? dbus_message_new_method_return(call) : nullptr)
{
    RequireMemory(mAnswer || !mIsAnswerWanted);
}

void LaunchCall::SendReceipt()
try
{
    if (mAnswer)
        mBus.Post(std::exchange(mAnswer, nullptr));
}
catch (const std::bad_alloc&)
{
    // The application has had its request, and goes on.
    PORT_LOG_ERROR("the sender of a launch request gets no answer: out of memory");
}

void LaunchCall::SendReply(const LaunchRequest& reply, int result)
{
    // A copy, for an answer that is filled by half cannot be filled again.
    BusMessage answer(dbus_message_copy(mAnswer.get()));
    RequireMemory(answer != nullptr);
    DBusMessageIter iter;
    dbus_message_iter_init_append(answer.get(), &iter);
    const dbus_int32_t code = result;
    RequireMemory(dbus_message_iter_append_basic(&iter, DBUS_TYPE_INT32, &code));
    AppendTexts(&iter, reply.extraData);
    mBus.Post(std::move(answer));
    mAnswer = nullptr;
}

} // namespace WatchPort
