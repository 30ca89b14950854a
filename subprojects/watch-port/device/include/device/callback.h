#ifndef WATCH_PORT_DEVICE_CALLBACK_H
#define WATCH_PORT_DEVICE_CALLBACK_H

#include <device/error.h>

#ifdef __cplusplus
extern "C" {
#endif

/** What callbacks can be added for. */
typedef enum
{
    DEVICE_CALLBACK_BATTERY_CHARGING = 2, /**< Whether the battery charges: 1 or 0. */
} device_callback_e;

/**
 * Called at a change, from the main loop. It may add and remove callbacks, including itself.
 *
 * @param type What has changed.
 * @param value The new value: an integer that the pointer carries, (intptr_t)value.
 * @param user_data As given to device_add_callback().
 */
typedef void (*device_changed_cb)(device_callback_e type, void* value, void* user_data);

/**
 * Calls a callback at each change from now on, never from inside this call.
 *
 * A change is a difference from the last result of device_battery_is_charging(), or, if that was
 * never called, from the state now, which is read in the same way. An unknown state counts as not
 * charging. Reading the same state again is no change.
 *
 * UPower is followed while it runs, also if it starts late, restarts or ends, and otherwise the
 * kernel's events of power supplies. While neither knows, the last state stands.
 *
 * @param type DEVICE_CALLBACK_BATTERY_CHARGING.
 * @param callback Not null. A callback can be added once, whatever its user data.
 * @param user_data Passed to the callback.
 * @return DEVICE_ERROR_NONE;
 *         DEVICE_ERROR_UNKNOWN_TYPE for another type;
 *         DEVICE_ERROR_INVALID_PARAMETER for a null callback;
 *         DEVICE_ERROR_ALREADY_ADDED if it has been added; it stays as it was;
 *         DEVICE_ERROR_OUT_OF_MEMORY.
 */
int device_add_callback(device_callback_e type, device_changed_cb callback, void* user_data);

/**
 * Stops calling a callback, at once. After the last one is removed, nothing is followed.
 *
 * @return DEVICE_ERROR_NONE;
 *         DEVICE_ERROR_UNKNOWN_TYPE for another type than DEVICE_CALLBACK_BATTERY_CHARGING;
 *         DEVICE_ERROR_INVALID_PARAMETER for a null callback;
 *         DEVICE_ERROR_NOT_ADDED if it has not been added.
 */
int device_remove_callback(device_callback_e type, device_changed_cb callback);

#ifdef __cplusplus
}
#endif

#endif
