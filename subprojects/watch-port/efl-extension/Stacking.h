#ifndef WATCH_PORT_EFL_EXTENSION_STACKING_H
#define WATCH_PORT_EFL_EXTENSION_STACKING_H

#include <Evas.h>

namespace WatchPort
{

/**
 * Whether an object has an area on its canvas that nothing hides: it and everything that it is
 * clipped to are shown, and they and the canvas have an area in common. An object in a hidden
 * widget, in a screen that another one has replaced, or in one that is not shown yet is not in
 * sight. A window is, as far as its canvas goes.
 */
bool IsInSight(const Evas_Object* object);

/**
 * Whether an object is drawn above another one of the same canvas, wherever they are in the widget
 * tree. The contents of a widget count as above the widget itself.
 */
bool IsAbove(const Evas_Object* object, const Evas_Object* other);

} // namespace WatchPort

#endif
