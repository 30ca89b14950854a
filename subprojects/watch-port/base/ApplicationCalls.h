#ifndef WATCH_PORT_BASE_APPLICATION_CALLS_H
#define WATCH_PORT_BASE_APPLICATION_CALLS_H

namespace WatchPort
{

/**
 * Whether the port may call the application: not from the end of its run on, for the toolkit turns
 * the main loop while it shuts down, and what the callbacks were registered with may be gone.
 *
 * Whoever calls back into the application asks first, at each call.
 */
bool MayCallApplication();

/** Opens or closes the way to the application. It is open until it is closed. */
void AllowApplicationCalls(bool areAllowed);

} // namespace WatchPort

#endif
