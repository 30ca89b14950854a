#include "app-control/SingleInstance.h"

#include "app-control/NameLookup.h"
#include "app-control/messages/RequestWriter.h"
#include "bus/Buses.h"
#include "dlog/PortLog.h"

namespace WatchPort
{

namespace
{
constexpr std::chrono::seconds kForwardPatience(5);
} // namespace

SingleInstance::SingleInstance(const std::string& applicationId, const LaunchRequest* request)
{
    if (applicationId.empty())
        return;
    BusConnection* const bus = SessionBus();
    if (bus)
    {
        mInbox = std::make_unique<LaunchInbox>(*bus, applicationId);
        mStanding = Settle(*bus, applicationId, request);
    }
    if (mStanding == Standing::Owner)
        bus->FollowLoop();
    else
        mInbox = nullptr;
    if (mStanding == Standing::Alone)
        PORT_LOG_WARN("there is no session bus, or it does not answer: "
                      "no launch requests will arrive");
}

SingleInstance::Standing SingleInstance::Settle(BusConnection& bus, const std::string& id,
                                                const LaunchRequest* request)
{
    switch (RequestName(bus, id))
    {
    case NameAnswer::Owned:
        return Standing::Owner;
    case NameAnswer::NoAnswer:
        return Standing::Alone;
    case NameAnswer::Taken:
        break;
    }
    if (!request || Forward(bus, id, *request))
        return Standing::Forwarded;
    // It may have been about to end.
    if (RequestName(bus, id) == NameAnswer::Owned)
        return Standing::Owner;
    return bus.IsConnected() ? Standing::NotTaken : Standing::Alone;
}

// Waits until the request has been received.
bool SingleInstance::Forward(BusConnection& bus, const std::string& id, LaunchRequest request)
{
    request.appId = id;
    const auto deadline = BusConnection::Clock::now() + kForwardPatience;
    return !IsError(bus.Ask(RequestWriter::WriteForDesktop(request), deadline));
}

} // namespace WatchPort
