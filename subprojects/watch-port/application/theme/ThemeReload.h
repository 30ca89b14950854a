#ifndef WATCH_PORT_APPLICATION_THEME_RELOAD_H
#define WATCH_PORT_APPLICATION_THEME_RELOAD_H

#include "application/display/Display.h"

#include <filesystem>

namespace WatchPort
{

/**
 * Loads what the windows show of themes in a folder, or below it, from its files again, which may
 * have been compiled anew. Texts and contents stay; a part goes back to the state that it had if a
 * signal of the theme leads there.
 *
 * @return How many objects were loaded again; one whose file or group has gone stays as it is.
 */
unsigned ReloadThemes(const Display& display, const std::filesystem::path& folder);

} // namespace WatchPort

#endif
