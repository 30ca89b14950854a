#ifndef WATCH_PORT_APPLICATION_WINDOWS_H
#define WATCH_PORT_APPLICATION_WINDOWS_H

#include "application/Display.h"

#include <Ecore_Evas.h>
#include <vector>

/**
 * Returns the canvases of the process's windows. With a display server, a canvas in memory is part
 * of a picture and no window.
 */
std::vector<Ecore_Evas*> ListWindows(const Display& display);

/** Gives each window that has no size yet that of the watch's screen. */
void SizeWindows(const Display& display);

/**
 * Asks the window manager to show the newest of the windows that are not hidden above all others
 * and to make it active. On Wayland, where no client may do that, and off screen nothing happens.
 */
void PresentWindow(const Display& display);

#endif
