#include "application/OwnId.h"

#include "app-control/ApplicationId.h"
#include "dlog/PortLog.h"

#include <cerrno>
#include <cstring>
#include <fstream>

namespace WatchPort
{

namespace
{
std::string Warn(const std::filesystem::path& file, const std::string& reason)
{
    PORT_LOG_WARN("\"%s\" %s: launch requests over the session bus do not arrive", file.c_str(),
                  reason.c_str());
    return {};
}
} // namespace

std::string ReadOwnId(const Installation& installation)
{
    const auto file = installation.resources / (installation.program + ".id");
    errno = 0;
    std::ifstream stream(file);
    std::string id;
    std::getline(stream, id);
    if (IsApplicationId(id))
        return id;
    if (errno == ENOENT)
        return {};
    if (errno != 0)
        return Warn(file, std::string("cannot be read (") + std::strerror(errno) + ")");
    return Warn(file, "holds no application id (such as \"org.example.Clock\")");
}

} // namespace WatchPort
