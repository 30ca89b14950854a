#ifndef WATCH_PORT_APPLICATION_TEXT_DOMAIN_H
#define WATCH_PORT_APPLICATION_TEXT_DOMAIN_H

#include "app-common/Installation.h"

namespace WatchPort
{

/**
 * Sets the locale of the environment, or C.UTF-8 where that is C, POSIX or not installed: in the
 * C locale no catalogue is read, whatever the language.
 */
void SetProgramLocale();

/**
 * Makes the program's catalogues the text domain, in UTF-8. When the system's language has none,
 * one warning line says so; when it has a broken one, see LeaveOutBrokenCatalogues().
 */
void BindTextDomain(const Installation& installation);

} // namespace WatchPort

#endif
