#ifndef WATCH_PORT_BASE_APPLICATION_CALLS_H
#define WATCH_PORT_BASE_APPLICATION_CALLS_H

namespace WatchPort
{

/**
 * Whether the port may call the application. Not after the end of its run: the toolkit still turns
 * the main loop while it shuts down, when the callbacks' data may be gone.
 *
 * All code that calls back into the application checks this first, at each call.
 */
bool MayCallApplication();

/** Allows or forbids such calls. At first they are allowed. */
void AllowApplicationCalls(bool areAllowed);

} // namespace WatchPort

#endif
