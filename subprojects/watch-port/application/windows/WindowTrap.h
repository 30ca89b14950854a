#ifndef WATCH_PORT_APPLICATION_WINDOWS_WINDOW_TRAP_H
#define WATCH_PORT_APPLICATION_WINDOWS_WINDOW_TRAP_H

#include <Elementary.h>

namespace WatchPort
{

/**
 * What the toolkit calls when it does something with a window. It knows only one such table: each
 * user sets functions here that no other user sets.
 */
Elm_Win_Trap& WindowTrap();

} // namespace WatchPort

#endif
