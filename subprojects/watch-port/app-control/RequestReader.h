#ifndef WATCH_PORT_APP_CONTROL_REQUEST_READER_H
#define WATCH_PORT_APP_CONTROL_REQUEST_READER_H

#include "app-control/AppControl.h"

#include <Eldbus.h>
#include <memory>

/**
 * Launch requests as they come from the bus. The bus sees to it that a message is well formed and
 * its texts are UTF-8, and to nothing else: arguments of any type and number arrive. Each function
 * returns null unless they are those of its method, and leaves empty keys out.
 */
namespace RequestReader
{

/** Activate(a{sv}): an empty request. */
std::unique_ptr<app_control_s> ReadActivate(const Eldbus_Message* call);

/** Open(as, a{sv}): the URIs are one text, one a line. */
std::unique_ptr<app_control_s> ReadOpen(const Eldbus_Message* call);

/**
 * ActivateAction(s, av, a{sv}): the action is the operation, which may be empty. No parameter, or
 * one a{sv} whose texts are the extra data; values of other types are left out.
 */
std::unique_ptr<app_control_s> ReadAction(const Eldbus_Message* call);

/** Launch(s, a{ss}): operation, which may be empty, and extra data. */
std::unique_ptr<app_control_s> ReadLaunch(const Eldbus_Message* call);

} // namespace RequestReader

#endif
