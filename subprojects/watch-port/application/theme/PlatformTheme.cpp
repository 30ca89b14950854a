#include "application/theme/PlatformTheme.h"

#include "dlog/PortLog.h"

#include <Elementary.h>

namespace WatchPort
{

namespace
{
bool IsTheme(const std::filesystem::path& file)
{
    Eina_List* groups = edje_file_collection_list(file.c_str());
    const bool hasGroups = groups != nullptr;
    edje_file_collection_list_free(groups);
    return hasGroups;
}
} // namespace

PlatformTheme::PlatformTheme(const std::filesystem::path& file)
{
    if (IsTheme(file))
    {
        mFile = file;
        elm_theme_overlay_add(nullptr, mFile.c_str());
        return;
    }
    PORT_LOG_WARN(
        "the watch's theme \"%s\" is missing or not a theme: screens without a title stay empty",
        file.c_str());
}

PlatformTheme::~PlatformTheme()
{
    if (!mFile.empty())
        elm_theme_overlay_del(nullptr, mFile.c_str());
}

} // namespace WatchPort
