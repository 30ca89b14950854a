#ifndef WATCH_PORT_APPLICATION_WINDOWS_DISPLAY_H
#define WATCH_PORT_APPLICATION_WINDOWS_DISPLAY_H

#include "application/windows/DisplayWatch.h"

#include <optional>

namespace WatchPort
{

/** What the process draws on. The connection to an X server is held as long as the object lives. */
class Display
{
public:
    enum class Kind
    {
        None,
        OffScreen, /**< The toolkit's engine draws into memory. */
        X11,
        Wayland,
    };

    /**
     * Looks for a display and connects to it. A server that has not answered within five seconds
     * is none, with one warning. DISPLAY leaves the environment where it leads to no X server.
     * One that falls silent later ends the process (see DisplayWatch) as long as the object lives.
     */
    Display();
    ~Display();
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;

    Kind GetKind() const { return mKind; }

    /** Hands over what is still to be sent, so that the server begins with it. */
    void Flush() const;

    /** Waits until the display server has handled everything that was drawn. */
    void Sync() const;

private:
    Kind Find();
    bool ConnectX11();
    bool ConnectWayland();

    std::optional<DisplayWatch> mWatch;
    const Kind mKind;
};

} // namespace WatchPort

#endif
