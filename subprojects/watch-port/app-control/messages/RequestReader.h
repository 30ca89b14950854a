#ifndef WATCH_PORT_APP_CONTROL_MESSAGES_REQUEST_READER_H
#define WATCH_PORT_APP_CONTROL_MESSAGES_REQUEST_READER_H

#include "app-control/LaunchRequest.h"

#include <dbus/dbus.h>

/**
 * Launch requests as they come from the bus. The bus sees to it that a message is well formed and
 * its texts are UTF-8, and to nothing else: arguments of any type and number arrive. Each function
 * fills in a new request, in which empty keys are left out, and stops where there is too much.
 */
namespace WatchPort::RequestReader
{

enum class Result
{
    Read,
    Malformed, /**< The arguments are not those of the method. */
    TooBig,    /**< More text or entries than ReadExtraData() takes. */
};

/** Activate(a{sv}): an empty request. */
Result ReadActivate(DBusMessage* call, LaunchRequest& request);

/** Open(as, a{sv}): the URIs are one text, one a line. */
Result ReadOpen(DBusMessage* call, LaunchRequest& request);

/**
 * ActivateAction(s, av, a{sv}): the action is the operation, which may be empty. No parameter, or
 * one a{sv} whose texts are the extra data; values of other types are left out.
 */
Result ReadAction(DBusMessage* call, LaunchRequest& request);

/** Launch(s, a{ss}): operation, which may be empty, and extra data. */
Result ReadLaunch(DBusMessage* call, LaunchRequest& request);

} // namespace WatchPort::RequestReader

#endif
