#ifndef WATCH_PORT_APPLICATION_WINDOWS_WINDOWS_H
#define WATCH_PORT_APPLICATION_WINDOWS_WINDOWS_H

#include "application/display/Display.h"

#include <Ecore_Evas.h>
#include <vector>

namespace WatchPort
{

/**
 * Returns the canvases of the process's windows. With a display server, a canvas in memory is part
 * of a picture and no window.
 */
std::vector<Ecore_Evas*> ListWindows(const Display& display);

/** The toolkit's object of a window; null for a canvas without one. */
Evas_Object* WindowObject(const Ecore_Evas* window);

/** Whether the window's object is hidden; one that is minimised is not. */
bool IsHidden(const Ecore_Evas* window);

/** Gives each window that has no size yet that of the watch's screen. */
void SizeWindows(const Display& display);

/**
 * Brings the newest of the windows that are not hidden before the user: the application has not
 * left it any more, and on X11 the window manager is asked to show it above all others and to make
 * it active. On Wayland, where no client may do that, nothing happens.
 */
void PresentWindow(const Display& display);

} // namespace WatchPort

#endif
