#ifndef WATCH_PORT_APP_COMMON_H
#define WATCH_PORT_APP_COMMON_H

/**
 * Where the running application finds its files.
 *
 * PROGRAM is the base name of the executable. All paths follow from the executable's, so an
 * installation may be moved: ROOT is the first folder above it that holds "share/PROGRAM/" (an
 * installation; "share" is the datadir with which this library was built) or "res/" (a build tree).
 */

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Returns the folder of the application's read-only resources: ROOT/share/PROGRAM/ or ROOT/res/.
 *
 * @return An absolute path that ends with "/"; the caller frees it with free(). Null, with one
 * error line, if there is no ROOT or no memory.
 */
char* app_get_resource_path(void);

/**
 * Returns the folder for the application's own data: $XDG_DATA_HOME/PROGRAM/, or
 * $HOME/.local/share/PROGRAM/ if XDG_DATA_HOME is unset, empty or relative (XDG base directories).
 * Missing folders are made, with mode 0700.
 *
 * @return An absolute path that ends with "/"; the caller frees it with free(). Null, with one
 * error line, if neither variable is an absolute path, the folder cannot be made, something else is
 * in its place, or there is no memory.
 */
char* app_get_data_path(void);

#ifdef __cplusplus
}
#endif

#endif
