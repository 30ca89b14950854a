#ifndef WATCH_PORT_BUS_BUSES_H
#define WATCH_PORT_BUS_BUSES_H

#include "bus/BusConnection.h"

#include <string>

namespace WatchPort
{

/**
 * Returns the process's connection to the system bus, made at the first call and kept until the
 * process ends. May be called before the toolkit is initialised; call FollowLoop() to get messages
 * from the main loop.
 *
 * A bus that accepts nobody, or accepts and then stays silent, is given up after
 * BusConnection::kPatience.
 *
 * @return Null if no system bus answered at the first call, or if it has died. Both are final: the
 *         system bus starts before its applications. Nothing is logged, and the process goes on.
 */
BusConnection* SystemBus();

/** The same for the session bus. If the environment names none, none is started. */
BusConnection* SessionBus();

/** The system bus's address: that of DBUS_SYSTEM_BUS_ADDRESS, else the usual one. */
std::string SystemBusAddress();

/**
 * The session bus's address: DBUS_SESSION_BUS_ADDRESS, else the user's bus in XDG_RUNTIME_DIR,
 * which may not exist; empty if neither variable is set.
 */
std::string SessionBusAddress();

} // namespace WatchPort

#endif
