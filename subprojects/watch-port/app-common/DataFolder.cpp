#include "app-common/DataFolder.h"

#include "dlog/PortLog.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>

namespace WatchPort
{

namespace fs = std::filesystem;

namespace
{
fs::path AbsolutePathFrom(const char* variable)
{
    const char* value = std::getenv(variable);
    const fs::path path(value ? value : "");
    return path.is_absolute() ? path : fs::path();
}

fs::path DataHome()
{
    const fs::path home = AbsolutePathFrom("HOME");
    const fs::path data = AbsolutePathFrom("XDG_DATA_HOME");
    return data.empty() && !home.empty() ? home / ".local/share" : data;
}

bool IsFolder(const fs::path& path)
{
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// Like mkdir -p, but private: other users may not look into a folder that we make.
bool MakeFolders(const fs::path& path)
{
    fs::path folder;
    for (const fs::path& part : path)
    {
        folder /= part;
        if (!IsFolder(folder) && mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST)
            return false;
    }
    errno = ENOTDIR;
    return IsFolder(path);
}
} // namespace

fs::path MakeDataFolder(const std::string& program)
{
    const fs::path home = DataHome();
    if (home.empty())
    {
        PORT_LOG_ERROR("no data folder: neither XDG_DATA_HOME nor HOME is an absolute path");
        return {};
    }
    const fs::path folder = home / program;
    if (!MakeFolders(folder))
    {
        PORT_LOG_ERROR("data folder \"%s\" cannot be made: %s", folder.c_str(),
                       std::strerror(errno));
        return {};
    }
    return folder;
}

} // namespace WatchPort
