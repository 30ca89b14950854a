#ifndef WATCH_PORT_APP_CONTROL_H
#define WATCH_PORT_APP_CONTROL_H

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct app_control_s* app_control_h;

typedef enum
{
    APP_CONTROL_RESULT_SUCCEEDED = 0,
    APP_CONTROL_RESULT_FAILED = -1,
} app_control_result_e;

typedef void (*app_control_reply_cb)(app_control_h request, app_control_h reply,
                                     app_control_result_e result, void* user_data);
typedef bool (*app_control_extra_data_cb)(app_control_h app_control, const char* key,
                                          void* user_data);

int app_control_create(app_control_h* app_control);
int app_control_destroy(app_control_h app_control);
int app_control_get_operation(app_control_h app_control, char** operation);
int app_control_set_operation(app_control_h app_control, const char* operation);
int app_control_set_app_id(app_control_h app_control, const char* app_id);
int app_control_get_extra_data(app_control_h app_control, const char* key, char** value);
int app_control_add_extra_data(app_control_h app_control, const char* key, const char* value);
int app_control_foreach_extra_data(app_control_h app_control, app_control_extra_data_cb callback,
                                   void* user_data);
int app_control_send_launch_request(app_control_h app_control, app_control_reply_cb callback,
                                    void* user_data);
int app_control_reply_to_launch_request(app_control_h reply, app_control_h request,
                                        app_control_result_e result);

#ifdef __cplusplus
}
#endif

#endif
