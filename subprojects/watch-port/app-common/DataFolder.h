#ifndef WATCH_PORT_APP_COMMON_DATA_FOLDER_H
#define WATCH_PORT_APP_COMMON_DATA_FOLDER_H

#include <filesystem>

namespace WatchPort
{

/**
 * Returns the folder for a program's data as app_get_data_path() describes, made when missing;
 * empty, with an error line, when it is not to be had.
 */
std::filesystem::path MakeDataFolder(const std::string& program);

} // namespace WatchPort

#endif
