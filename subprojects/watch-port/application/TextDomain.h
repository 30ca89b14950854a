#ifndef WATCH_PORT_APPLICATION_TEXT_DOMAIN_H
#define WATCH_PORT_APPLICATION_TEXT_DOMAIN_H

#include "app-common/Installation.h"

#include <filesystem>
#include <future>

/**
 * Sets the locale of the environment, or C.UTF-8 where that is C, POSIX or not installed: in the
 * C locale no catalogue is read, whatever the language.
 */
void SetProgramLocale();

/**
 * Looks for a broken catalogue among those of all languages, on a thread of its own: the toolkit
 * starts meanwhile. The result is its path, empty when none is broken. The future waits for the
 * thread when it is destroyed.
 */
std::future<std::filesystem::path> FindBrokenCatalogue(const Installation& installation);

/**
 * Makes the program's catalogues the text domain, in UTF-8. A catalogue that is missing for the
 * system's language is reported in one warning line. When one is broken, that is reported instead
 * and none is bound: the language may change to the broken one at any time.
 *
 * @param broken The broken catalogue, or an empty path, see FindBrokenCatalogue().
 */
void BindTextDomain(const Installation& installation, const std::filesystem::path& broken);

#endif
