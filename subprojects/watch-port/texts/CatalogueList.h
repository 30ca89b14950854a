#ifndef WATCH_PORT_TEXTS_CATALOGUE_LIST_H
#define WATCH_PORT_TEXTS_CATALOGUE_LIST_H

#include <string>

namespace WatchPort
{

/**
 * Begins with a language: LANGUAGE, the list of catalogues that gettext looks in, is set, unless
 * the user has set it.
 */
void BeginCatalogues(const std::string& language);

/**
 * Makes gettext use another language, no matter what LANGUAGE was, but never a broken catalogue of
 * the text domain.
 */
void ChangeCatalogues(const std::string& language);

/**
 * Takes each name out of LANGUAGE for which gettext may read a broken catalogue of the text domain,
 * and reports the catalogue in one warning line. To be called before the first text is looked up.
 *
 * @return Whether there was one.
 */
bool LeaveOutBrokenCatalogues();

} // namespace WatchPort

#endif
