#ifndef WATCH_PORT_APP_COMMON_H
#define WATCH_PORT_APP_COMMON_H

#ifdef __cplusplus
extern "C" {
#endif

char* app_get_resource_path(void);
char* app_get_data_path(void);

#ifdef __cplusplus
}
#endif

#endif
