#ifndef WATCH_PORT_APP_CONTROL_LAUNCH_REQUEST_H
#define WATCH_PORT_APP_CONTROL_LAUNCH_REQUEST_H

#include "app-control/app_control.h"

/** Does what app_control_send_launch_request() describes; logs what fails. */
int SendLaunchRequest(const app_control_s& request, app_control_reply_cb callback, void* userData);

#endif
