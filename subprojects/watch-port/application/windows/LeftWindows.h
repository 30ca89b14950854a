#ifndef WATCH_PORT_APPLICATION_WINDOWS_LEFT_WINDOWS_H
#define WATCH_PORT_APPLICATION_WINDOWS_LEFT_WINDOWS_H

#include "application/display/Display.h"

#include <Ecore_Evas.h>

namespace WatchPort
{

/**
 * Has the toolkit note which windows the application leaves: those that it lowers, also where no
 * other window lies behind them, and those that it withdraws. It comes back to a window by showing,
 * raising or activating it.
 *
 * On Wayland, where no client can lower its window, a window that is lowered is minimised instead.
 */
void NoteLeaving(const Display& display);

/** Whether the application has left the window, and it has not been brought back since. */
bool IsLeft(const Ecore_Evas* window);

/** Whether the application had left the window when NoteGone() was called last. */
bool IsGone(const Ecore_Evas* window);

/** The turn of the loop ends in which the application may have left the window. */
void NoteGone(Ecore_Evas* window);

/** The window is brought back. */
void NoteReturn(Ecore_Evas* window);

} // namespace WatchPort

#endif
