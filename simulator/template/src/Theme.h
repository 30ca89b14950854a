#ifndef THEME_H
#define THEME_H

#include <Evas.h>
#include <string>

/** What views make of the theme and of the catalogue. */
namespace Theme
{

/** The theme file's path. */
std::string File();

/** A layout of one group of the theme, shown; owned by the widget tree under `parent`. */
Evas_Object* MakeLayout(Evas_Object* parent, const char* group);

/** A text of the catalogue in the watch's language; the id itself when no catalogue has it. */
std::string Text(const char* id);

} // namespace Theme

#endif
