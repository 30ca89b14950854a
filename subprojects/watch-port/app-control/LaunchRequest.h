#ifndef WATCH_PORT_APP_CONTROL_LAUNCH_REQUEST_H
#define WATCH_PORT_APP_CONTROL_LAUNCH_REQUEST_H

#include <app_control.h>

#include <map>
#include <memory>
#include <string>

namespace WatchPort
{
class LaunchCall;
} // namespace WatchPort

/** What an app_control_h points to. Every text in it is UTF-8 without null bytes. */
struct app_control_s
{
    std::string operation = APP_CONTROL_OPERATION_DEFAULT;
    std::string appId;
    std::map<std::string, std::string> extraData;
    std::shared_ptr<WatchPort::LaunchCall> call; /**< Null unless the request came over the bus. */
};

namespace WatchPort
{
using LaunchRequest = app_control_s;
} // namespace WatchPort

#endif
