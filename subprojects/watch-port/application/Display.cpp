#include "application/Display.h"

#include <Ecore_X.h>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace
{
std::string Environment(const char* name)
{
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

bool IsEngineOffScreen()
{
    const std::string engine = Environment("ELM_ENGINE");
    return engine == "buffer" || engine.rfind("shot:", 0) == 0;
}

bool CanConnect(const std::string& socketPath)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (socketPath.size() >= sizeof address.sun_path)
        return false;
    std::memcpy(address.sun_path, socketPath.c_str(), socketPath.size());
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    const bool connected =
        fd >= 0 && connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    if (fd >= 0)
        close(fd);
    return connected;
}

bool HasWayland()
{
    const std::string name = Environment("WAYLAND_DISPLAY");
    const bool isPath = name.rfind('/', 0) == 0;
    return !name.empty() && CanConnect(isPath ? name : Environment("XDG_RUNTIME_DIR") + "/" + name);
}

Display::Kind FindDisplay()
{
    if (IsEngineOffScreen())
        return Display::Kind::OffScreen;
    // Besides, the toolkit itself connects no sooner than for its first window: until then the
    // X events have no types that handlers could be added for.
    if (!Environment("DISPLAY").empty() && ecore_x_init(nullptr) > 0)
        return Display::Kind::X11;
    return HasWayland() ? Display::Kind::Wayland : Display::Kind::None;
}
} // namespace

Display::Display() : mKind(FindDisplay())
{
}

Display::~Display()
{
    if (mKind == Kind::X11)
        ecore_x_shutdown();
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
