#ifndef WATCH_PORT_SUPPORT_SYSTEM_BUS_H
#define WATCH_PORT_SUPPORT_SYSTEM_BUS_H

#include <Eldbus.h>

/**
 * Returns the process's connection to the system bus, made at the first call and kept until the
 * process ends. It is not the caller's to unref. May be called before the toolkit is initialised.
 *
 * @return Null when there is no system bus, which is asked anew at each call, or when the bus has
 *         died, which is final: the system does not survive its bus. Nothing is logged.
 */
Eldbus_Connection* SystemBus();

#endif
