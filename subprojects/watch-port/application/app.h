#ifndef WATCH_PORT_APP_H
#define WATCH_PORT_APP_H

#include <app_common.h>
#include <app_control.h>
#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef bool (*app_create_cb)(void* user_data);
typedef void (*app_terminate_cb)(void* user_data);
typedef void (*app_pause_cb)(void* user_data);
typedef void (*app_resume_cb)(void* user_data);
typedef void (*app_control_cb)(app_control_h app_control, void* user_data);

typedef struct
{
    app_create_cb create;
    app_terminate_cb terminate;
    app_pause_cb pause;
    app_resume_cb resume;
    app_control_cb app_control;
} ui_app_lifecycle_callback_s;

int ui_app_main(int argc, char** argv, ui_app_lifecycle_callback_s* callbacks, void* user_data);
void ui_app_exit(void);

#ifdef __cplusplus
}
#endif

#endif
