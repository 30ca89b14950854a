#ifndef SIMULATOR_COMMON_THEME_H
#define SIMULATOR_COMMON_THEME_H

#include <Evas.h>
#include <string>

/**
 * The file with the desk watch's picture groups: share/qivo-watch/watch.edj below the first folder
 * above the executable that has it, as in an installation, or theme/watch.edj, as in a build tree.
 *
 * Throws std::runtime_error when there is none.
 */
const std::string& ThemeFile();

/** A new object that shows a group of the theme, shown; the canvas owns it. Throws likewise. */
Evas_Object* AddThemed(Evas* canvas, const char* group);

#endif
