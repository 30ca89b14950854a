#ifndef WATCH_PORT_DEVICE_CALLBACK_H
#define WATCH_PORT_DEVICE_CALLBACK_H

#ifdef __cplusplus
extern "C" {
#endif

typedef enum
{
    DEVICE_CALLBACK_BATTERY_CHARGING = 2,
} device_callback_e;

typedef void (*device_changed_cb)(device_callback_e type, void* value, void* user_data);

int device_add_callback(device_callback_e type, device_changed_cb callback, void* user_data);
int device_remove_callback(device_callback_e type, device_changed_cb callback);

#ifdef __cplusplus
}
#endif

#endif
