#ifndef WATCH_PORT_SYSTEM_SETTINGS_CATALOGUES_H
#define WATCH_PORT_SYSTEM_SETTINGS_CATALOGUES_H

#include <string>

/** Begins with a language: LANGUAGE is set, unless the user has set it. */
void BeginCatalogues(const std::string& language);

/** Turns gettext to another language, whatever LANGUAGE was. */
void ChangeCatalogues(const std::string& language);

/**
 * Gives a process in the "C" locale "C.UTF-8" for messages and characters, as gettext looks at
 * no catalogue in the former. To be repeated: the toolkit's initialisation sets the locale anew.
 */
void LeaveLocaleC();

#endif
