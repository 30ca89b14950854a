#ifndef WATCH_PORT_APPLICATION_OWN_ID_H
#define WATCH_PORT_APPLICATION_OWN_ID_H

#include "app-common/Installation.h"

#include <string>

namespace WatchPort
{

/**
 * Returns the application id that the program's resources give: the only line of the file
 * PROGRAM.id. Empty without such a file, and, with a warning, when it cannot be read or holds no
 * application id.
 */
std::string ReadOwnId(const Installation& installation);

} // namespace WatchPort

#endif
