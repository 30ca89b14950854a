#include "common/util/CommonUtil.h"

#include <app_common.h>
#include <cstdlib>
#include <memory>

namespace QivoUi
{

namespace
{

// The directory ends with "/". Frees it, also when there is no memory for the path.
std::string Join(char* directory, const std::string& fileName)
{
    const std::unique_ptr<char, decltype(&std::free)> owner(directory, std::free);
    std::string path;
    if (!directory)
    {
        return path;
    }
    path += directory;
    path += fileName;
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
