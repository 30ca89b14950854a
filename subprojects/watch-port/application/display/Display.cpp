#include "application/display/Display.h"

#include "base/Patience.h"
#include "dlog/PortLog.h"

#include <Ecore_X.h>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <wayland-client-core.h>
#include <xcb/xcb.h>

namespace WatchPort
{

namespace
{
// A server at the far end of a slow line takes a second or two.
constexpr std::chrono::seconds kPatience(5);

constexpr char kXServer[] = "the X server of DISPLAY";
constexpr char kCompositor[] = "the compositor of WAYLAND_DISPLAY";

struct XCloser
{
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
using XConnection = std::unique_ptr<xcb_connection_t, XCloser>;

std::string Environment(const char* name)
{
    const char* value = std::getenv(name);
    return value ? value : "";
}

bool IsEngineOffScreen()
{
    const std::string engine = Environment("ELM_ENGINE");
    return engine == "buffer" || engine.rfind("shot:", 0) == 0;
}

int Connect(const std::string& socketPath)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (socketPath.size() >= sizeof address.sun_path)
        return -1;
    std::memcpy(address.sun_path, socketPath.c_str(), socketPath.size());
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd >= 0 && connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0)
        return fd;
    if (fd >= 0)
        close(fd);
    return -1;
}

// Not by the compositor's name: so the library would use up a connection that the process inherits.
bool IsAnswered(const std::string& socketPath)
{
    const int fd = Connect(socketPath);
    wl_display* const compositor = fd < 0 ? nullptr : wl_display_connect_to_fd(fd);
    if (!compositor)
        return false;
    const bool isAnswered = wl_display_roundtrip(compositor) >= 0;
    wl_display_disconnect(compositor);
    return isAnswered;
}

void WarnOfSilence(const char* server)
{
    PORT_LOG_WARN("%s has not answered within %d seconds", server,
                  static_cast<int>(kPatience.count()));
}
} // namespace

Display::Display() : mKind(Find())
{
}

Display::~Display()
{
    if (mKind == Kind::X11)
        ecore_x_shutdown();
}

Display::Kind Display::Find()
{
    if (IsEngineOffScreen())
        return Kind::OffScreen;
    // Over both waits: between them the signal would be delivered, and the second not see it.
    const Termination termination;
    if (ConnectX11(termination))
        return Kind::X11;
    if (ConnectWayland(termination))
        return Kind::Wayland;
    return termination.HasCome() ? Kind::Abandoned : Kind::None;
}

bool Display::ConnectX11(const Termination& termination)
{
    const std::string name = Environment("DISPLAY");
    if (name.empty())
        return false;
    const auto connect = [name] { return XConnection(xcb_connect(name.c_str(), nullptr)); };
    // Held until the toolkit has its own: a server may reset when its last client leaves.
    const auto connection = CallWithPatience(kPatience, connect);
    if (connection && xcb_connection_has_error(connection->get()) == 0)
    {
        mWatch.emplace(kXServer, [connect] { static_cast<void>(connect()); });
        // Besides, the toolkit itself connects no sooner than for its first window: until then the
        // X events have no types that handlers could be added for.
        if (ecore_x_init(nullptr) > 0)
            return true;
        mWatch.reset();
    }
    if (!connection && !termination.HasCome())
        WarnOfSilence(kXServer);
    // The toolkit would try it again, and wait without an end or have no window.
    unsetenv("DISPLAY");
    return false;
}

bool Display::ConnectWayland(const Termination& termination)
{
    const std::string name = Environment("WAYLAND_DISPLAY");
    if (name.empty())
        return false;
    const std::string path =
        name.front() == '/' ? name : Environment("XDG_RUNTIME_DIR") + "/" + name;
    const auto isAnswered = CallWithPatience(kPatience, [path] { return IsAnswered(path); });
    if (!isAnswered && !termination.HasCome())
        WarnOfSilence(kCompositor);
    if (!isAnswered.value_or(false))
        return false;
    mWatch.emplace(kCompositor, [path] { static_cast<void>(IsAnswered(path)); });
    return true;
}

int Display::GetScreenSize() const
{
    if (mKind != Kind::X11)
        return kUsualScreenSize;
    int width = 0;
    int height = 0;
    ecore_x_screen_size_get(ecore_x_default_screen_get(), &width, &height);
    return width == height ? width : kUsualScreenSize;
}

void Display::Flush() const
{
    if (mKind == Kind::X11)
        ecore_x_flush();
}

void Display::Sync() const
{
    if (mKind == Kind::X11)
        ecore_x_sync();
}

} // namespace WatchPort
