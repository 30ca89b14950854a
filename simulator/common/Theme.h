#ifndef SIMULATOR_COMMON_THEME_H
#define SIMULATOR_COMMON_THEME_H

#include <Evas.h>
#include <string>

/**
 * The file with the desk watch's picture groups: watch.edj of the installation, also if that has
 * been moved, or theme/watch.edj in the first folder above the executable (a build tree).
 *
 * Throws std::runtime_error when there is none.
 */
const std::string& ThemeFile();

/** A new object, shown and owned by the canvas, with a group of the theme. Throws likewise. */
Evas_Object* AddThemed(Evas* canvas, const char* group);

#endif
