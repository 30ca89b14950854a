#ifndef WATCH_PORT_APPLICATION_ACCESS_ACCESS_NEWS_H
#define WATCH_PORT_APPLICATION_ACCESS_ACCESS_NEWS_H

#include "application/access/AccessTree.h"
#include "bus/BusMessage.h"

#include <functional>

namespace WatchPort
{

/**
 * Makes the signals that tell a screen reader what has changed: objects that came or went, names
 * and texts, what is in sight, the active window and where reading begins.
 *
 * @param bus The unique name of the process on the readers' bus.
 * @param send Called with each, in order.
 */
void TellNews(const AccessTree::Objects& before, const AccessTree::Objects& now, const char* bus,
              const std::function<void(BusMessage)>& send);

} // namespace WatchPort

#endif
