#ifndef WATCH_PORT_TEXTS_TEXT_DOMAIN_H
#define WATCH_PORT_TEXTS_TEXT_DOMAIN_H

#include "app-common/Installation.h"

#include <string>

namespace WatchPort
{

/**
 * Makes the program's catalogues the text domain, in UTF-8. To be called once the list of
 * catalogues is there (see CatalogueList.h).
 *
 * When the language has no catalogue, one warning line says so; when it has a broken one, see
 * LeaveOutBrokenCatalogues().
 *
 * @param language A result of NormaliseLocale().
 */
void BindTextDomain(const Installation& installation, const std::string& language);

} // namespace WatchPort

#endif
