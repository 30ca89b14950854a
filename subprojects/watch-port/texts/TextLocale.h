#ifndef WATCH_PORT_TEXTS_TEXT_LOCALE_H
#define WATCH_PORT_TEXTS_TEXT_LOCALE_H

namespace WatchPort
{

/**
 * Sets the locale of the environment, as far as gettext reads catalogues in it: where characters
 * are those of "C" or the locale is not installed, they become UTF-8, and messages never stay in
 * "C" or "C.UTF-8".
 *
 * Repeat this after the toolkit's start, which sets the locale again.
 */
void SetTextLocale();

} // namespace WatchPort

#endif
