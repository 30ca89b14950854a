#ifndef WATCH_PORT_UI_EXTENSION_H
#define WATCH_PORT_UI_EXTENSION_H

#include <Evas.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct uxt_theme_color_table_s* uxt_theme_color_table_h;
typedef struct uxt_theme_font_table_s* uxt_theme_font_table_h;

int uxt_theme_set_changeable_ui_enabled(Eina_Bool enabled);
uxt_theme_color_table_h uxt_theme_add_color_table(const char* path);
int uxt_theme_set_color_table(uxt_theme_color_table_h table);
uxt_theme_font_table_h uxt_theme_add_font_table(const char* path);
int uxt_theme_set_font_table(uxt_theme_font_table_h table);
int uxt_theme_object_set_color(Evas_Object* object, const char* color_code);

#ifdef __cplusplus
}
#endif

#endif
