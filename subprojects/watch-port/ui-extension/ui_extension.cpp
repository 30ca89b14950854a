#include <ui_extension.h>

#include "base/Printable.h"
#include "dlog/PortLog.h"
#include "ui-extension/Appearance.h"
#include "ui-extension/ColoredObjects.h"
#include "ui-extension/tables/ColorTable.h"
#include "ui-extension/tables/FontTable.h"
#include "ui-extension/tables/ThemeTables.h"

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

using ColorTablesOfProcess = ThemeTables<uxt_theme_color_table_s, Contrast>;
using FontTablesOfProcess = ThemeTables<uxt_theme_font_table_s, TextSize>;

ColorTablesOfProcess& ColorTables()
{
    static ColorTablesOfProcess tables;
    return tables;
}

FontTablesOfProcess& FontTables()
{
    static FontTablesOfProcess tables;
    return tables;
}

ColoredObjects& Objects()
{
    static ColoredObjects objects;
    return objects;
}

template <typename Table, typename Way>
int SetTable(ThemeTables<Table, Way>& tables, const Table* table, const char* function)
{
    if (tables.Set(table))
        return UXT_THEME_ERROR_NONE;
    return PORT_REFUSE(UXT_THEME_ERROR_INVALID_PARAMETER, function,
                       "%s (must be one that this library has read)",
                       table ? "unknown table" : "table is null");
}

} // namespace

void WatchPort::SetTextSize(double factor)
{
    const TextSize size(factor);
    if (size == FontTables().GetWay())
        return;
    size.Publish();
    // Last, as a table may have a font for a text of the toolkit.
    FontTables().SetWay(size);
}

void WatchPort::SetHighContrast(bool isHigh)
{
    const Contrast contrast = isHigh ? Contrast::High : Contrast::Normal;
    ColorTables().SetWay(contrast);
    Objects().SetContrast(contrast);
}

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
    Objects().SetColor(object, *found);
    return UXT_THEME_ERROR_NONE;
}
catch (const std::bad_alloc&)
{
    return PORT_REFUSE(UXT_THEME_ERROR_OUT_OF_MEMORY, __func__, "out of memory");
}
