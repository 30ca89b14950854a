#ifndef WATCH_PORT_APP_COMMON_H
#define WATCH_PORT_APP_COMMON_H

/**
 * Where the running application finds its files.
 *
 * PROGRAM is the base name of the executable. Everything is found from where the executable
 * lies, so an installation may be moved: ROOT is the first folder above it that holds
 * "share/PROGRAM/" (an installation) or "res/" (a build tree).
 */

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Returns the folder of the application's read-only resources: ROOT/share/PROGRAM/ or ROOT/res/.
 *
 * @return An absolute path that ends with "/"; the caller frees it with free(). Null when there
 *         is no ROOT (one error line says so) or no memory.
 */
char* app_get_resource_path(void);

/**
 * Returns the folder for what the application keeps: $XDG_DATA_HOME/PROGRAM/, or
 * $HOME/.local/share/PROGRAM/ when XDG_DATA_HOME is unset, empty or relative, as the XDG base
 * directories have it. Folders that are missing on the way are made, with mode 0700.
 *
 * @return An absolute path that ends with "/"; the caller frees it with free(). Null when neither
 *         variable is an absolute path, the folder cannot be made or something else stands in
 *         its place (one error line says which), or there is no memory.
 */
char* app_get_data_path(void);

#ifdef __cplusplus
}
#endif

#endif
