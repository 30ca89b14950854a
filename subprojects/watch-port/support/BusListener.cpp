#include "support/BusListener.h"

#include <utility>

BusListener::BusListener(Eldbus_Connection* bus, const BusSignalAddress& address)
    : mBus(bus), mService(address.mService)
{
    mSignals = eldbus_signal_handler_add(mBus, mService, address.mPath, address.mInterface,
                                         address.mSignal, SSignalCB, this);
    eldbus_name_owner_changed_callback_add(mBus, mService, SOwnerChangedCB, this, EINA_FALSE);
    eldbus_connection_event_callback_add(mBus, ELDBUS_CONNECTION_EVENT_DISCONNECTED,
                                         SDisconnectedCB, this);
}

BusListener::~BusListener()
{
    DropQuestion();
    eldbus_connection_event_callback_del(mBus, ELDBUS_CONNECTION_EVENT_DISCONNECTED,
                                         SDisconnectedCB, this);
    eldbus_name_owner_changed_callback_del(mBus, mService, SOwnerChangedCB, this);
    eldbus_signal_handler_del(mSignals);
}

void BusListener::Ask(Eldbus_Message* question)
{
    DropQuestion();
    mQuestion = eldbus_connection_send(mBus, question, SAnswerCB, this, -1);
}

void BusListener::DropQuestion()
{
    if (mQuestion)
        eldbus_pending_cancel(std::exchange(mQuestion, nullptr));
}

void BusListener::SOwnerChangedCB(void* data, const char* /*service*/, const char* /*before*/,
                                  const char* now)
{
    auto* self = static_cast<BusListener*>(data);
    if (*now)
        self->OnAppeared();
    else
        self->OnGone();
}

void BusListener::SAnswerCB(void* data, const Eldbus_Message* answer, Eldbus_Pending* pending)
{
    auto* self = static_cast<BusListener*>(data);
    // Eldbus answers a cancelled question itself, at once.
    if (pending != self->mQuestion)
        return;
    self->mQuestion = nullptr;
    self->OnAnswer(answer);
}

void BusListener::SSignalCB(void* data, const Eldbus_Message* signal)
{
    static_cast<BusListener*>(data)->OnSignal(signal);
}

void BusListener::SDisconnectedCB(void* data, Eldbus_Connection* /*bus*/, void* /*event*/)
{
    static_cast<BusListener*>(data)->OnGone();
}
