#include "application/access/Accessibility.h"

#include "application/windows/Windows.h"
#include "dlog/PortLog.h"

#include <algorithm>
#include <new>

namespace WatchPort
{

Accessibility::~Accessibility()
{
    StopAwaitingFrame();
    if (mFollow)
        ecore_job_del(mFollow);
}

void Accessibility::FollowAfterFrame(Ecore_Evas* window)
{
    if (!window)
    {
        FollowSoon();
        return;
    }
    mAwaited = window;
    evas_event_callback_add(ecore_evas_get(window), EVAS_CALLBACK_RENDER_POST, SFrameCB, this);
    evas_object_event_callback_add(WindowObject(window), EVAS_CALLBACK_DEL, SDeletedCB, this);
}

void Accessibility::StopAwaitingFrame()
{
    const auto windows = ListWindows(mDisplay);
    if (std::find(windows.begin(), windows.end(), mAwaited) != windows.end())
    {
        evas_event_callback_del_full(ecore_evas_get(mAwaited), EVAS_CALLBACK_RENDER_POST, SFrameCB,
                                     this);
        evas_object_event_callback_del_full(WindowObject(mAwaited), EVAS_CALLBACK_DEL, SDeletedCB,
                                            this);
    }
    mAwaited = nullptr;
}

void Accessibility::SFrameCB(void* data, Evas*, void*)
{
    auto* self = static_cast<Accessibility*>(data);
    self->StopAwaitingFrame();
    self->FollowSoon();
}

void Accessibility::SDeletedCB(void* data, Evas* canvas, Evas_Object*, void* info)
{
    SFrameCB(data, canvas, info);
}

void Accessibility::FollowSoon()
{
    mFollow = ecore_job_add(SFollowJob, this);
}

void Accessibility::SFollowJob(void* data)
{
    auto* self = static_cast<Accessibility*>(data);
    self->mFollow = nullptr;
    self->Follow();
}

void Accessibility::Follow()
try
{
    mReader = ScreenReader::Follow([this](const std::string& address) { OnReader(address); });
}
catch (const std::bad_alloc&)
{
    PORT_LOG_ERROR("no screen reader can be followed: out of memory");
}

void Accessibility::OnReader(const std::string& address)
{
    if (address == mAddress && (!mConnection || mConnection->IsConnected()))
        return;
    Leave();
    mAddress = address;
    if (!address.empty())
        Join();
}

void Accessibility::Join()
{
    mConnection =
        BusConnection::Open(mAddress, BusConnection::Clock::now() + BusConnection::kPatience);
    if (mConnection)
        mBus = std::make_unique<AccessBus>(*mConnection, mDisplay);
    else
        PORT_LOG_WARN("the screen readers' bus does not answer: nothing is read aloud");
}

void Accessibility::Leave()
{
    mBus.reset();
    mConnection.reset();
}

} // namespace WatchPort
