#ifndef WATCH_PORT_APPLICATION_WINDOWS_FIRST_FRAME_H
#define WATCH_PORT_APPLICATION_WINDOWS_FIRST_FRAME_H

#include "application/display/Display.h"

#include <Ecore_Evas.h>

namespace WatchPort
{

/**
 * Has the window draw a frame and logs "first frame" when the display server has it. A frame that
 * was begun before does not count.
 *
 * @param display Outlives the window.
 */
void ReportFrame(Ecore_Evas* window, const Display& display);

} // namespace WatchPort

#endif
