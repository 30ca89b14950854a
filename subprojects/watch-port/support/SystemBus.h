#ifndef WATCH_PORT_SUPPORT_SYSTEM_BUS_H
#define WATCH_PORT_SUPPORT_SYSTEM_BUS_H

#include <Eldbus.h>

/**
 * Returns the process's connection to the system bus, made at the first call and kept until the
 * process ends. It is not the caller's to unref. May be called before the toolkit is initialised.
 *
 * @return Null when there was no system bus at the first call, or when it has died. Both are
 *         final: the system's bus is there before its applications. Nothing is logged.
 */
Eldbus_Connection* SystemBus();

#endif
