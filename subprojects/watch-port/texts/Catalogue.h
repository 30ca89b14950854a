#ifndef WATCH_PORT_TEXTS_CATALOGUE_H
#define WATCH_PORT_TEXTS_CATALOGUE_H

#include <filesystem>
#include <string_view>

namespace WatchPort
{

/** What a message catalogue (a .mo file) is good for. */
enum class CatalogueState
{
    Sound,
    Unreadable, /**< Missing, or not to be opened. */
    Broken,     /**< Cut or no catalogue: the C library would crash in looking up a text. */
    TooLarge,   /**< Larger than 16 MiB: far more than an application has to say. */
};

/** Tells whether the C library can be given the file. */
CatalogueState CheckCatalogue(const std::filesystem::path& file);

/**
 * Tells whether the bytes are a whole catalogue: every table and text lies within them. Revision 0
 * alone is known, which msgfmt writes unless a text names an integer type's format (PRIu64).
 */
bool IsCatalogue(std::string_view bytes);

} // namespace WatchPort

#endif
