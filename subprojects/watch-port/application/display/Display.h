#ifndef WATCH_PORT_APPLICATION_DISPLAY_DISPLAY_H
#define WATCH_PORT_APPLICATION_DISPLAY_DISPLAY_H

#include "application/display/DisplayWatch.h"
#include "base/Termination.h"

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
        Abandoned, /**< A signal that ends the application came while a display was looked for. */
    };

    /** The side of the watch's screen in pixels, where the display does not say otherwise. */
    static constexpr int kUsualScreenSize = 360;

    /**
     * Looks for a display and connects to it. A server that has not answered within five seconds
     * is none, with one warning. DISPLAY leaves the environment where it leads to no X server.
     * One that falls silent later ends the process (see DisplayWatch) as long as the object lives.
     * SIGTERM, SIGINT and SIGHUP end the wait; they are delivered when it has ended.
     */
    Display();
    ~Display();
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;

    Kind GetKind() const { return mKind; }

    /**
     * The side of the watch's square screen in pixels: that of the X screen where it is square, as
     * a watch's is, else kUsualScreenSize.
     */
    int GetScreenSize() const;

    /** Hands over what is still to be sent, so that the server begins with it. */
    void Flush() const;

    /** Waits until the display server has handled everything that was drawn. */
    void Sync() const;

private:
    Kind Find();
    bool ConnectX11(const Termination& termination);
    bool ConnectWayland(const Termination& termination);

    std::optional<DisplayWatch> mWatch;
    const Kind mKind;
};

} // namespace WatchPort

#endif
