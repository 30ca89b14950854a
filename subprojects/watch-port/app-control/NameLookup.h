#ifndef WATCH_PORT_APP_CONTROL_NAME_LOOKUP_H
#define WATCH_PORT_APP_CONTROL_NAME_LOOKUP_H

#include "bus/BusConnection.h"

#include <string>

namespace WatchPort
{

/** What the session bus knows of a name. */
enum class BusAnswer
{
    NoBus,   /**< None is named by the environment, or it did not answer within two seconds. */
    Unknown, /**< Nobody owns the name, and the bus cannot start anybody who would. */
    Known,
};

/** Asks the session bus for a name. A bus is never started for that. */
BusAnswer AskSessionBus(const std::string& name);

/** What became of the wish for a name. */
enum class NameAnswer
{
    NoAnswer,
    Owned,
    Taken, /**< Another process owns it. */
};

/**
 * Asks for a name on a bus and waits for the answer, a second at most. A name that comes later is
 * given back.
 */
NameAnswer RequestName(BusConnection& bus, const std::string& name);

} // namespace WatchPort

#endif
