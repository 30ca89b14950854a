#ifndef WATCH_PORT_APP_COMMON_DATA_FOLDER_H
#define WATCH_PORT_APP_COMMON_DATA_FOLDER_H

#include <filesystem>

namespace WatchPort
{

/**
 * Returns the folder for a program's data, as app_get_data_path() describes, and makes it if it is
 * missing; empty, with an error line, if that fails.
 */
std::filesystem::path MakeDataFolder(const std::string& program);

} // namespace WatchPort

#endif
