#ifndef WATCH_PORT_SYSTEM_SETTINGS_LOCALE_NAME_H
#define WATCH_PORT_SYSTEM_SETTINGS_LOCALE_NAME_H

#include <optional>
#include <string>
#include <string_view>

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
 * Lists the catalogues to look in, for gettext's LANGUAGE: "ko_KR:ko:en" for "ko_KR.UTF-8".
 *
 * @param locale A result of NormaliseLocale().
 */
std::string ListCatalogues(std::string_view locale);

/** Tells whether clocks count to 24 in a locale, a result of NormaliseLocale(). */
bool CountsTo24(const std::string& locale);

#endif
