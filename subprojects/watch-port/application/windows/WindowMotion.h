#ifndef WATCH_PORT_APPLICATION_WINDOWS_WINDOW_MOTION_H
#define WATCH_PORT_APPLICATION_WINDOWS_WINDOW_MOTION_H

#include "application/display/Display.h"

namespace WatchPort
{

/**
 * Has each window of the process that is made from now on tell on X11 whether anything in it moves:
 * its property "_WATCH_PORT_MOTION", a cardinal, is 1 while the toolkit ticks for a motion in the
 * window or for a frame that is still to be drawn, else 0. It is written when that changes, so a
 * motion costs two requests and a window that stands still none.
 *
 * Only so can one who looks from outside know that a motion has ended: the last pixels of a slow
 * one may lie any time apart. On other displays nothing happens.
 */
void TellMotions(const Display& display);

} // namespace WatchPort

#endif
