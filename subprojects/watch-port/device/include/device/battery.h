#ifndef WATCH_PORT_DEVICE_BATTERY_H
#define WATCH_PORT_DEVICE_BATTERY_H

#include <device/error.h>

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Tells whether the system's battery is charging at this moment.
 *
 * UPower's display device is asked first: charging is its State 1, and no other (a full battery
 * at the charger does not charge). UPower is started for it where it is installed and does not
 * run yet. The call waits for its answer, 500 ms at the longest, and at the first call also for
 * the system bus: about 1 ms, and 2 s where a bus accepts and then keeps silent, which is given
 * up then for as long as the process lives. Without an answer the kernel is asked: charging is a
 * battery in /sys/class/power_supply with the status "Charging". Batteries of peripherals (scope
 * "Device": a mouse, a pen) do not count.
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
