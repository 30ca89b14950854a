#ifndef SIMULATOR_COMMON_THEME_H
#define SIMULATOR_COMMON_THEME_H

#include <Evas.h>
#include <string>

/**
 * The file with the desk watch's picture groups. It is in the first folder above the executable
 * that has share/qivo-watch/watch.edj (an installation) or theme/watch.edj (a build tree).
 *
 * Throws std::runtime_error when there is none.
 */
const std::string& ThemeFile();

/** A new object, shown and owned by the canvas, with a group of the theme. Throws likewise. */
Evas_Object* AddThemed(Evas* canvas, const char* group);

#endif
