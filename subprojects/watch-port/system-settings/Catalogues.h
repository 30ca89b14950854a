#ifndef WATCH_PORT_SYSTEM_SETTINGS_CATALOGUES_H
#define WATCH_PORT_SYSTEM_SETTINGS_CATALOGUES_H

#include <string>

namespace WatchPort
{

/** Begins with a language: LANGUAGE is set, unless the user has set it. */
void BeginCatalogues(const std::string& language);

/**
 * Turns gettext to another language, whatever LANGUAGE was, but to no broken catalogue of the text
 * domain.
 */
void ChangeCatalogues(const std::string& language);

/**
 * Takes each name out of LANGUAGE for which gettext may read a broken catalogue of the text domain,
 * and reports the catalogue in one warning line. To be called before the first text is looked up.
 *
 * @return Whether there was one.
 */
bool LeaveOutBrokenCatalogues();

/**
 * Gives a process in the "C" locale "C.UTF-8" for messages and characters, as gettext looks at
 * no catalogue in the former. To be repeated: the toolkit's initialisation sets the locale anew.
 */
void LeaveLocaleC();

} // namespace WatchPort

#endif
