#ifndef WATCH_PORT_APPLICATION_WINDOWS_SHAPE_H
#define WATCH_PORT_APPLICATION_WINDOWS_SHAPE_H

#include <Evas.h>

namespace WatchPort
{

/**
 * Whether an object is one of the canvas's own shapes: the toolkit logs an error for one that is
 * asked for its members.
 */
bool IsShape(const Evas_Object* object);

} // namespace WatchPort

#endif
