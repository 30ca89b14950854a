#ifndef WATCH_PORT_APPLICATION_WINDOWS_WINDOW_TRAP_H
#define WATCH_PORT_APPLICATION_WINDOWS_WINDOW_TRAP_H

#include <Elementary.h>

namespace WatchPort
{

/**
 * What the toolkit calls when it does something with a window. It knows one such table alone: who
 * wants to be called sets a function here that nobody else has set.
 */
Elm_Win_Trap& WindowTrap();

} // namespace WatchPort

#endif
