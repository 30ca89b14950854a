#ifndef WATCH_PORT_APPLICATION_WINDOWS_THEMED_OBJECTS_H
#define WATCH_PORT_APPLICATION_WINDOWS_THEMED_OBJECTS_H

#include "application/display/Display.h"

#include <Evas.h>
#include <vector>

namespace WatchPort
{

/** Returns what a theme draws in the process's windows, shown or not: Edje's objects. */
std::vector<Evas_Object*> ListThemed(const Display& display);

/**
 * Has each layout of the application's own (elm_layout) ask its theme for its least size anew. The
 * toolkit does so by itself when a theme or a text changes, and not when the size of a text class
 * does.
 */
void SizeLayouts(const Display& display);

} // namespace WatchPort

#endif
