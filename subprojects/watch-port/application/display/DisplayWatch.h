#ifndef WATCH_PORT_APPLICATION_DISPLAY_DISPLAY_WATCH_H
#define WATCH_PORT_APPLICATION_DISPLAY_DISPLAY_WATCH_H

#include <functional>
#include <string>

namespace WatchPort
{

/**
 * Ends the process when the display server is silent and holds it up.
 *
 * The toolkit waits for the server without a limit, and some of its waits are busy ones. So a turn
 * of the main loop that takes long makes a thread ask the server a question on a connection of its
 * own, and without an answer the process ends with one error line and the status of
 * APP_ERROR_NO_DISPLAY, five seconds at most after the turn began. No callback is called then: the
 * main thread hangs. A turn that the application itself makes long changes nothing.
 *
 * While the main loop sleeps nothing waits for the server, and no timer runs. The time before and
 * after the main loop counts as a turn.
 */
class DisplayWatch
{
public:
    /**
     * One at a time.
     *
     * @param server What the error line calls the server.
     * @param ask Returns when the server has answered; called on other threads, where it may hang.
     */
    DisplayWatch(const std::string& server, std::function<void()> ask);
    ~DisplayWatch();
    DisplayWatch(const DisplayWatch&) = delete;
    DisplayWatch& operator=(const DisplayWatch&) = delete;
};

} // namespace WatchPort

#endif
