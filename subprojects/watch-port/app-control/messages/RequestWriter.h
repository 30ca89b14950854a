#ifndef WATCH_PORT_APP_CONTROL_MESSAGES_REQUEST_WRITER_H
#define WATCH_PORT_APP_CONTROL_MESSAGES_REQUEST_WRITER_H

#include "app-control/LaunchRequest.h"
#include "bus/BusMessage.h"

/** Launch requests as they go to the bus, to the object of the application that they are for. */
namespace WatchPort::RequestWriter
{

/** Launch(s, a{ss}): the application is asked for its reply. */
BusMessage WriteLaunch(const LaunchRequest& request);

/**
 * Activate(a{sv}) for the default operation without extra data, else ActivateAction(s, av, a{sv})
 * with the operation as the action and the extra data as its parameter.
 */
BusMessage WriteForDesktop(const LaunchRequest& request);

} // namespace WatchPort::RequestWriter

#endif
