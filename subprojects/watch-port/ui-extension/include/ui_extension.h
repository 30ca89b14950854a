#ifndef WATCH_PORT_UI_EXTENSION_H
#define WATCH_PORT_UI_EXTENSION_H

/**
 * The theme extension: an application's colours and fonts come from tables, so that they can be
 * changed without touching its theme.
 *
 * A table is an XML file. Its entries' ids are the theme's colour classes and text classes:
 *
 *     <ColorTable><Color id="app/text" r="255" g="255" b="255" a="255"/></ColorTable>
 *     <FontTable><Font id="app/body" name="Sans" style="Regular" size="30"/></FontTable>
 *
 * All attributes are required. Colours are 0 to 255 and not premultiplied; a font size is 1 to
 * 500, in the theme's unscaled pixels. A wrong entry is left out, of entries with the same id the
 * last one counts, and the rest of the table is used. Each such case is one line in the log (tag
 * "WATCH_PORT") with file, line, value and what is accepted. Entities are not expanded, and nothing
 * outside the file is ever read.
 *
 * Call all functions on the main loop's thread, between elm_init() and elm_shutdown().
 */

#include <Evas.h>

#ifdef __cplusplus
extern "C" {
#endif

/** A colour table in memory. It belongs to the library and lives until the process ends. */
typedef struct uxt_theme_color_table_s* uxt_theme_color_table_h;
/** A font table in memory. It belongs to the library and lives until the process ends. */
typedef struct uxt_theme_font_table_s* uxt_theme_font_table_h;

/** The results of the functions that return an int. */
enum uxt_theme_error
{
    UXT_THEME_ERROR_NONE = 0,
    /** A null argument, or a table that the library did not make. */
    UXT_THEME_ERROR_INVALID_PARAMETER = -22,
    /** No colour table is set. */
    UXT_THEME_ERROR_NO_TABLE = -61,
    /** The set colour table has no such colour code. */
    UXT_THEME_ERROR_UNKNOWN_CODE = -2,
    /** No memory; nothing was changed. */
    UXT_THEME_ERROR_OUT_OF_MEMORY = -12,
};

/**
 * Sets whether the tables may change the interface. At first they may not.
 *
 * Enabling applies the tables that are already set. Disabling removes their classes again, so the
 * theme's own colours and fonts show.
 *
 * @param enabled EINA_TRUE to let the tables change the interface
 * @return UXT_THEME_ERROR_NONE, always
 */
int uxt_theme_set_changeable_ui_enabled(Eina_Bool enabled);

/**
 * Reads a colour table; nothing is applied yet.
 *
 * @param path the XML file: a regular file of at most 1 MiB
 * @return the table, also when some entries were left out; null, with one line in the log, when
 *         the file is not a colour table at all: a null path, a file that is missing, unreadable
 *         or too long, a root element other than ColorTable, XML that breaks off before the first
 *         entry, or no memory
 */
uxt_theme_color_table_h uxt_theme_add_color_table(const char* path);

/**
 * Makes a table the process's colour table, in place of the one before.
 *
 * While changeable UI is enabled, every colour is the Edje colour class of its id for the whole
 * process: it multiplies the colour of each part of that class. Outlines and shadows of texts keep
 * the theme's colours.
 *
 * @param table a table from uxt_theme_add_color_table()
 * @return UXT_THEME_ERROR_NONE, or UXT_THEME_ERROR_INVALID_PARAMETER with one line in the log; the
 *         table before then stays set
 */
int uxt_theme_set_color_table(uxt_theme_color_table_h table);

/**
 * Reads a font table; nothing is applied yet.
 *
 * @param path the XML file, as for uxt_theme_add_color_table(), with the root element FontTable
 * @return the table or null, as for uxt_theme_add_color_table()
 */
uxt_theme_font_table_h uxt_theme_add_font_table(const char* path);

/**
 * Makes a table the process's font table, in place of the one before.
 *
 * While changeable UI is enabled, every font is the Edje text class of its id for the whole
 * process.
 *
 * @param table a table from uxt_theme_add_font_table()
 * @return as for uxt_theme_set_color_table()
 */
int uxt_theme_set_font_table(uxt_theme_font_table_h table);

/**
 * Gives an object a colour from the set colour table, whether or not changeable UI is enabled. The
 * object keeps that colour when another table is set later.
 *
 * @param object any canvas object
 * @param color_code the id of an entry
 * @return UXT_THEME_ERROR_NONE; UXT_THEME_ERROR_INVALID_PARAMETER for a null argument;
 *         UXT_THEME_ERROR_NO_TABLE; UXT_THEME_ERROR_UNKNOWN_CODE; UXT_THEME_ERROR_OUT_OF_MEMORY.
 *         After an error the object is unchanged and the log has one line.
 */
int uxt_theme_object_set_color(Evas_Object* object, const char* color_code);

#ifdef __cplusplus
}
#endif

#endif
