#include "app-control/LaunchSender.h"

#include "app-control/AppControl.h"
#include "app-control/ExtraData.h"

#include <utility>

namespace WatchPort
{

LaunchSender::LaunchSender(BusConnection& bus, DBusMessage* call, Wish wish)
    : mBus(bus), mWish(wish), mIsAnswerWanted(!dbus_message_get_no_reply(call)),
      mAnswer(mIsAnswerWanted ? dbus_message_new_method_return(call) : nullptr)
{
    RequireMemory(mAnswer || !mIsAnswerWanted);
}

void LaunchSender::SendReceipt()
{
    if (mAnswer)
        mBus.Post(std::exchange(mAnswer, nullptr));
}

void LaunchSender::SendReply(const app_control_s& reply, int result)
{
    DBusMessageIter iter;
    dbus_message_iter_init_append(mAnswer.get(), &iter);
    const dbus_int32_t code = result;
    RequireMemory(dbus_message_iter_append_basic(&iter, DBUS_TYPE_INT32, &code));
    AppendTexts(&iter, reply.extraData);
    mBus.Post(std::exchange(mAnswer, nullptr));
}

} // namespace WatchPort
