#include "app-control/LaunchSender.h"

#include "app-control/AppControl.h"
#include "app-control/ExtraData.h"

LaunchSender::LaunchSender(Eldbus_Connection* bus, const Eldbus_Message* call, Wish wish)
    : mBus(bus), mCall(eldbus_message_ref(const_cast<Eldbus_Message*>(call))), mWish(wish)
{
}

LaunchSender::~LaunchSender()
{
    eldbus_message_unref(mCall);
}

void LaunchSender::SendReceipt()
{
    Send(eldbus_message_method_return_new(mCall));
}

void LaunchSender::SendReply(const app_control_s& reply, int result)
{
    Eldbus_Message* answer = eldbus_message_method_return_new(mCall);
    Eldbus_Message_Iter* iter = eldbus_message_iter_get(answer);
    eldbus_message_iter_basic_append(iter, 'i', result);
    AppendTexts(iter, reply.extraData);
    Send(answer);
}

void LaunchSender::Send(Eldbus_Message* answer)
{
    mIsAnswered = true;
    if (mBus != nullptr)
        eldbus_connection_send(mBus, answer, nullptr, nullptr, -1);
    else
        eldbus_message_unref(answer);
}
