#ifndef WATCH_PORT_DEVICE_BATTERY_H
#define WATCH_PORT_DEVICE_BATTERY_H

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

int device_battery_is_charging(bool* charging);

#ifdef __cplusplus
}
#endif

#endif
