#ifndef WATCH_PORT_DEVICE_BATTERY_H
#define WATCH_PORT_DEVICE_BATTERY_H

#include <device/error.h>

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Reads whether the system's battery is charging now.
 *
 * UPower's display device is asked first: charging is State 1 and no other (a full battery at the
 * charger does not charge). The bus starts UPower if it is installed and not running. The call
 * waits for the answer for 500 ms at most. The first call also waits for the system bus: about 1
 * ms; a bus that accepts and then stays silent is given up after 2 s for the life of the process.
 * Without an answer the kernel is asked: a battery in /sys/class/power_supply with the status
 * "Charging" is charging. Batteries of peripherals (scope "Device": a mouse, a pen) do not count.
 *
 * @param charging Set to the answer on success, left as it is otherwise.
 * @return DEVICE_ERROR_NONE;
 *         DEVICE_ERROR_INVALID_PARAMETER for a null pointer;
 *         DEVICE_ERROR_NO_BATTERY when neither UPower nor the kernel has an answer;
 *         DEVICE_ERROR_OUT_OF_MEMORY.
 */
int device_battery_is_charging(bool* charging);

#ifdef __cplusplus
}
#endif

#endif
