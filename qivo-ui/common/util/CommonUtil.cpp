#include "common/util/CommonUtil.h"

#include <app_common.h>
#include <cstdlib>

namespace QivoUi
{

namespace
{

// The directory ends with "/". Frees it.
std::string Join(char* directory, const std::string& fileName)
{
    std::string path;
    if (!directory)
    {
        return path;
    }
    path += directory;
    path += fileName;
    std::free(directory);
    return path;
}

} // namespace

std::string CommonUtil::GetResourcePath(std::string fileName)
{
    return Join(app_get_resource_path(), fileName);
}

std::string CommonUtil::GetDataPath(std::string fileName)
{
    return Join(app_get_data_path(), fileName);
}

} // namespace QivoUi
