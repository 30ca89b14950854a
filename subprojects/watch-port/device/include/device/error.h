#ifndef WATCH_PORT_DEVICE_ERROR_H
#define WATCH_PORT_DEVICE_ERROR_H

#ifdef __cplusplus
extern "C" {
#endif

/** The results of the device calls. A call that fails logs one error line, but for
 * NO_BATTERY. */
typedef enum
{
    DEVICE_ERROR_NONE = 0,               /**< Success. */
    DEVICE_ERROR_INVALID_PARAMETER = -1, /**< A null pointer. */
    DEVICE_ERROR_UNKNOWN_TYPE = -2,      /**< Not a device_callback_e. */
    DEVICE_ERROR_ALREADY_ADDED = -3,     /**< The callback has already been added. */
    DEVICE_ERROR_NOT_ADDED = -4,         /**< The callback has not been added. */
    DEVICE_ERROR_NO_BATTERY =
        -5, /**< Neither UPower nor the kernel knows a battery of the system. */
    DEVICE_ERROR_OUT_OF_MEMORY = -6, /**< No memory; no callback was added. */
} device_error_e;

#ifdef __cplusplus
}
#endif

#endif
