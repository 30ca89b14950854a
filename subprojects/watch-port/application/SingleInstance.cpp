#include "application/SingleInstance.h"

#include "app-control/LaunchRequest.h"
#include "app-control/NameLookup.h"
#include "bus/Buses.h"
#include "dlog/PortLog.h"

namespace WatchPort
{

SingleInstance::SingleInstance(const std::string& applicationId, const CommandLine& commandLine)
{
    if (applicationId.empty())
        return;
    BusConnection* const bus = SessionBus();
    if (bus)
    {
        mInbox = std::make_unique<LaunchInbox>(*bus, applicationId);
        mStanding = Settle(*bus, applicationId, commandLine);
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
                                                const CommandLine& commandLine)
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
    if (commandLine.isService || Forward(bus, id, commandLine))
        return Standing::Forwarded;
    // It may have been about to end.
    if (RequestName(bus, id) == NameAnswer::Owned)
        return Standing::Owner;
    return bus.IsConnected() ? Standing::NotTaken : Standing::Alone;
}

bool SingleInstance::Forward(BusConnection& bus, const std::string& id,
                             const CommandLine& commandLine)
{
    app_control_s request;
    request.operation = commandLine.operation;
    request.extraData = commandLine.extraData;
    request.appId = id;
    return ForwardLaunchRequest(bus, request);
}

} // namespace WatchPort
