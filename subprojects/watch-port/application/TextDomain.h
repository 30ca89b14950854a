#ifndef WATCH_PORT_APPLICATION_TEXT_DOMAIN_H
#define WATCH_PORT_APPLICATION_TEXT_DOMAIN_H

#include "app-common/Installation.h"

/**
 * Sets the locale of the environment, or C.UTF-8 where that is C, POSIX or not installed: in the
 * C locale no catalogue is read, whatever the language.
 */
void SetProgramLocale();

/**
 * Makes the program's catalogues the text domain, in UTF-8. A catalogue that is missing for the
 * system's language is reported in one warning line. When a catalogue is broken, that is reported
 * instead and none is bound: the language may change to the broken one at any time.
 */
void BindTextDomain(const Installation& installation);

#endif
