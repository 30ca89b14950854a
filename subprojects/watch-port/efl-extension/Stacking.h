#ifndef WATCH_PORT_EFL_EXTENSION_STACKING_H
#define WATCH_PORT_EFL_EXTENSION_STACKING_H

#include <Evas.h>

namespace WatchPort
{

/// Whether an object is shown, and all that it is clipped to: so an object is not that stands in a
/// hidden widget or in a screen that another one has taken the place of.
bool IsShown(const Evas_Object* object);

/// Whether an object is drawn above another one of the same canvas, wherever in the tree of widgets
/// they are. What is inside a widget counts as above the widget itself.
bool IsAbove(const Evas_Object* object, const Evas_Object* other);

} // namespace WatchPort

#endif
