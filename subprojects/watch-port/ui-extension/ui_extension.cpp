#include <ui_extension.h>

#include "base/Printable.h"
#include "dlog/PortLog.h"
#include "ui-extension/ColorTable.h"
#include "ui-extension/FontTable.h"
#include "ui-extension/ThemeTables.h"

#include <new>

using namespace WatchPort;

struct uxt_theme_color_table_s : ColorTable
{
};

struct uxt_theme_font_table_s : FontTable
{
};

namespace
{

ThemeTables<uxt_theme_color_table_s>& ColorTables()
{
    static ThemeTables<uxt_theme_color_table_s> tables;
    return tables;
}

ThemeTables<uxt_theme_font_table_s>& FontTables()
{
    static ThemeTables<uxt_theme_font_table_s> tables;
    return tables;
}

template <typename Table>
int SetTable(ThemeTables<Table>& tables, const Table* table, const char* function)
{
    if (tables.Set(table))
        return UXT_THEME_ERROR_NONE;
    return PORT_REFUSE(UXT_THEME_ERROR_INVALID_PARAMETER, function,
                       "%s (must be one that this library has read)",
                       table ? "unknown table" : "table is null");
}

} // namespace

int uxt_theme_set_changeable_ui_enabled(Eina_Bool enabled)
{
    ColorTables().SetEnabled(enabled);
    FontTables().SetEnabled(enabled);
    return UXT_THEME_ERROR_NONE;
}

uxt_theme_color_table_h uxt_theme_add_color_table(const char* path)
try
{
    return ColorTables().Add(path);
}
catch (const std::bad_alloc&)
{
    return PORT_REFUSE(nullptr, __func__, "out of memory");
}

int uxt_theme_set_color_table(uxt_theme_color_table_h table)
{
    return SetTable(ColorTables(), table, __func__);
}

uxt_theme_font_table_h uxt_theme_add_font_table(const char* path)
try
{
    return FontTables().Add(path);
}
catch (const std::bad_alloc&)
{
    return PORT_REFUSE(nullptr, __func__, "out of memory");
}

int uxt_theme_set_font_table(uxt_theme_font_table_h table)
{
    return SetTable(FontTables(), table, __func__);
}

int uxt_theme_object_set_color(Evas_Object* object, const char* color_code)
try
{
    if (!object)
        return PORT_REFUSE(UXT_THEME_ERROR_INVALID_PARAMETER, __func__,
                           "object is null (must be a canvas object)");
    if (!color_code)
        return PORT_REFUSE(UXT_THEME_ERROR_INVALID_PARAMETER, __func__,
                           "colour code is null (must be an id of the colour table)");
    const uxt_theme_color_table_s* table = ColorTables().Current();
    if (!table)
        return PORT_REFUSE(UXT_THEME_ERROR_NO_TABLE, __func__, "no colour table is set");
    const Color* found = table->Find(color_code);
    if (!found)
        return PORT_REFUSE(UXT_THEME_ERROR_UNKNOWN_CODE, __func__,
                           "colour code %s is not an id of the colour table",
                           Quoted(color_code).c_str());
    Color color = *found;
    evas_color_argb_premul(color.a, &color.r, &color.g, &color.b);
    evas_object_color_set(object, color.r, color.g, color.b, color.a);
    return UXT_THEME_ERROR_NONE;
}
catch (const std::bad_alloc&)
{
    return PORT_REFUSE(UXT_THEME_ERROR_OUT_OF_MEMORY, __func__, "out of memory");
}
