#ifndef WATCH_PORT_APP_CONTROL_APP_CONTROL_H
#define WATCH_PORT_APP_CONTROL_APP_CONTROL_H

#include "app-control/LaunchSender.h"
#include <app_control.h>

#include <map>
#include <memory>
#include <string>

/** What an app_control_h points to. Every text in it is UTF-8 without null bytes. */
struct app_control_s
{
    std::string operation = APP_CONTROL_OPERATION_DEFAULT;
    std::string appId;
    std::map<std::string, std::string> extraData;
    std::shared_ptr<WatchPort::LaunchSender>
        sender; /**< Null unless the request came over the bus. */
};

#endif
