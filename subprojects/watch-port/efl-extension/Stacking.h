#ifndef WATCH_PORT_EFL_EXTENSION_STACKING_H
#define WATCH_PORT_EFL_EXTENSION_STACKING_H

#include <Evas.h>

namespace WatchPort
{

/**
 * Whether an object has an area on its canvas that nothing hides: it and all that it is clipped to
 * are shown, and they and the canvas have an area in common. So an object is not in sight that
 * stands in a hidden widget, in a screen that another one has taken the place of, or in one that
 * is built and not yet shown anywhere. A window is, as far as its canvas goes.
 */
bool IsInSight(const Evas_Object* object);

/**
 * Whether an object is drawn above another one of the same canvas, wherever in the tree of widgets
 * they are. What is inside a widget counts as above the widget itself.
 */
bool IsAbove(const Evas_Object* object, const Evas_Object* other);

} // namespace WatchPort

#endif
