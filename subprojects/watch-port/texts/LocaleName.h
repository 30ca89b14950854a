#ifndef WATCH_PORT_TEXTS_LOCALE_NAME_H
#define WATCH_PORT_TEXTS_LOCALE_NAME_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace WatchPort
{

/** What an unset language reads as. */
constexpr char kDefaultLocale[] = "en_US.UTF-8";

/**
 * Brings a locale's name to the form in which it is given to applications: with a codeset,
 * UTF-8 in one spelling, and "C" and "POSIX" replaced by kDefaultLocale.
 *
 * @return Nothing when it is no locale's name.
 */
std::optional<std::string> NormaliseLocale(std::string_view name);

/**
 * Lists the catalogues to look in, the best first: "es_MX", "es_419", "es", "en" for
 * "es_MX.UTF-8". Beside the language's own are some that its reader understands better than
 * English: those of Latin America, of traditional or simplified Chinese, of a newer language code.
 *
 * @param locale A result of NormaliseLocale().
 */
std::vector<std::string> ListCatalogues(std::string_view locale);

/** The territory, such as "MX", of a result of NormaliseLocale(); empty when it has none. */
std::string_view TerritoryOf(std::string_view locale);

} // namespace WatchPort

#endif
