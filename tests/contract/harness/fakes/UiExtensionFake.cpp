#include "harness/PlatformState.h"
#include <ui_extension.h>

extern "C" {

int uxt_theme_set_changeable_ui_enabled(Eina_Bool isEnabled)
{
    Recorder::AddCall("uxt_theme_set_changeable_ui_enabled", isEnabled);
    return Platform::Result("uxt_theme_set_changeable_ui_enabled");
}

uxt_theme_color_table_h uxt_theme_add_color_table(const char* path)
{
    const Allocations::Pause pause;
    static char sTable;
    Recorder::AddCall("uxt_theme_add_color_table", path);
    if (Platform::IsToldToFail("uxt_theme_add_color_table"))
    {
        return nullptr;
    }
    Recorder::Name(&sTable, "colorTable");
    return reinterpret_cast<uxt_theme_color_table_h>(&sTable);
}

int uxt_theme_set_color_table(uxt_theme_color_table_h table)
{
    Recorder::AddCall("uxt_theme_set_color_table", table);
    return Platform::Result("uxt_theme_set_color_table");
}

uxt_theme_font_table_h uxt_theme_add_font_table(const char* path)
{
    const Allocations::Pause pause;
    static char sTable;
    Recorder::AddCall("uxt_theme_add_font_table", path);
    if (Platform::IsToldToFail("uxt_theme_add_font_table"))
    {
        return nullptr;
    }
    Recorder::Name(&sTable, "fontTable");
    return reinterpret_cast<uxt_theme_font_table_h>(&sTable);
}

int uxt_theme_set_font_table(uxt_theme_font_table_h table)
{
    Recorder::AddCall("uxt_theme_set_font_table", table);
    return Platform::Result("uxt_theme_set_font_table");
}

int uxt_theme_object_set_color(Evas_Object* object, const char* code)
{
    Recorder::AddCall("uxt_theme_object_set_color", object, code);
    return Platform::Result("uxt_theme_object_set_color");
}

} // extern "C"
