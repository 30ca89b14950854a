#include <app_common.h>

#include "app-common/DataFolder.h"
#include "app-common/Installation.h"
#include "dlog/PortLog.h"

#include <cstring>
#include <new>

using namespace WatchPort;

namespace
{
char* NewFolderText(const std::filesystem::path& folder)
{
    return strdup((folder / "").c_str());
}
} // namespace

char* app_get_resource_path(void)
try
{
    const auto installation = FindInstallation(RunningExecutable());
    if (installation)
        return NewFolderText(installation->resources);
    PORT_LOG_ERROR("no resource folder: no folder above \"%s\" holds share/PROGRAM/ or res/",
                   RunningExecutable().c_str());
    return nullptr;
}
catch (const std::bad_alloc&)
{
    return PORT_REFUSE(nullptr, __func__, "out of memory");
}

char* app_get_data_path(void)
try
{
    const auto folder = MakeDataFolder(RunningExecutable().filename());
    return folder.empty() ? nullptr : NewFolderText(folder);
}
catch (const std::bad_alloc&)
{
    return PORT_REFUSE(nullptr, __func__, "out of memory");
}
