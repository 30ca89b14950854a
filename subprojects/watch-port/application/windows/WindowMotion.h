#ifndef WATCH_PORT_APPLICATION_WINDOWS_WINDOW_MOTION_H
#define WATCH_PORT_APPLICATION_WINDOWS_WINDOW_MOTION_H

#include "application/display/Display.h"

namespace WatchPort
{

/**
 * Makes each later window of the process report on X11 whether anything in it moves: its property
 * "_WATCH_PORT_MOTION", a cardinal, is 1 while the toolkit ticks for a motion in the window or for
 * a frame that is still to be drawn, else 0. It is written when that changes, so a motion costs two
 * requests and a window that stands still none.
 *
 * From the pixels alone another program cannot know that a motion has ended: the last steps of a
 * slow one may lie any time apart. On other displays nothing happens.
 */
void TellMotions(const Display& display);

} // namespace WatchPort

#endif
