#ifndef WATCH_PORT_APPLICATION_WINDOWS_SCREEN_H
#define WATCH_PORT_APPLICATION_WINDOWS_SCREEN_H

#include "application/windows/Display.h"

namespace WatchPort
{

/**
 * The side of the watch's square screen in pixels: that of the X screen where it is square, as a
 * watch's is, else 360.
 */
int ScreenSize(const Display& display);

/**
 * Takes the user's settings of the toolkit out of the environment, before the toolkit starts: a
 * scale, theme or finger size meant for a desktop would break the pages of a watch. The engine
 * (ELM_ENGINE) stays.
 */
void DropToolkitSettings();

/**
 * Sets the toolkit up for the watch: a finger drags, flicks and bounces what scrolls, and sizes
 * follow the screen, whose scale is 1.3 at 360 pixels, the base scale of the watch's applications.
 * Nothing is left that wakes the application while it stands still.
 */
void SetUpToolkit(const Display& display);

} // namespace WatchPort

#endif
