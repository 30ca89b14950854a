#ifndef WATCH_PORT_APP_CONTROL_LAUNCH_REQUEST_H
#define WATCH_PORT_APP_CONTROL_LAUNCH_REQUEST_H

#include "bus/BusConnection.h"
#include <app_control.h>

namespace WatchPort
{

/** Does what app_control_send_launch_request() describes; logs what fails. */
int SendLaunchRequest(const app_control_s& request, app_control_reply_cb callback, void* userData);

/**
 * Hands a request to the process that owns the request's application id, and waits until it has
 * been received, five seconds at most. Nothing is logged.
 */
bool ForwardLaunchRequest(BusConnection& bus, const app_control_s& request);

/** Does what app_control_reply_to_launch_request() describes; logs what fails. */
int ReplyToLaunchRequest(const app_control_s& reply, app_control_s& request,
                         app_control_result_e result);

} // namespace WatchPort

#endif
