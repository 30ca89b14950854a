#include "application/SingleInstance.h"

#include "app-control/LaunchRequest.h"
#include "dlog/dlog.h"

SingleInstance::SingleInstance(const std::string& applicationId, const CommandLine& commandLine)
{
    if (applicationId.empty())
        return;
    mBus = std::make_unique<LaunchBus>();
    if (mBus->IsConnected())
        mStanding = Settle(applicationId, commandLine);
    if (mStanding == Standing::Owner)
        mInbox = std::make_unique<LaunchInbox>(mBus->Connection(), applicationId);
    else
        mBus = nullptr;
    if (mStanding == Standing::Alone)
        __dlog_print(LOG_ID_MAIN, DLOG_WARN, "WATCH_PORT",
                     "there is no session bus, or it does not answer: "
                     "no launch requests will arrive");
}

SingleInstance::Standing SingleInstance::Settle(const std::string& id,
                                                const CommandLine& commandLine)
{
    NameAnswer answer = mBus->RequestName(id);
    if (answer == NameAnswer::Taken)
    {
        if (commandLine.isService || Forward(id, commandLine))
            return Standing::Forwarded;
        // It may have been about to end.
        answer = mBus->RequestName(id);
    }
    switch (answer)
    {
    case NameAnswer::Owned:
        return Standing::Owner;
    case NameAnswer::Taken:
        return Standing::NotTaken;
    case NameAnswer::NoAnswer:
        break;
    }
    return Standing::Alone;
}

bool SingleInstance::Forward(const std::string& id, const CommandLine& commandLine) const
{
    app_control_s request;
    request.operation = commandLine.operation;
    request.extraData = commandLine.extraData;
    request.appId = id;
    return ForwardLaunchRequest(*mBus, request);
}
