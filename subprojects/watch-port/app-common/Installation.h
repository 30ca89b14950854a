#ifndef WATCH_PORT_APP_COMMON_INSTALLATION_H
#define WATCH_PORT_APP_COMMON_INSTALLATION_H

#include <filesystem>
#include <optional>
#include <string>

namespace WatchPort
{

/** The files that belong to a program, in an installation or a build tree. */
struct Installation
{
    std::string program;                 /**< Base name of the executable. */
    std::filesystem::path resources;     /**< The application's own resources. */
    std::filesystem::path locales;       /**< Message catalogues: LANG/LC_MESSAGES/DOMAIN.mo. */
    std::filesystem::path platformTheme; /**< The watch's theme for the toolkit. */
};

/**
 * Finds what belongs to an executable, given by its absolute path; nothing without a ROOT.
 *
 * The theme is that of the same installation or build tree, else of an outer build tree, else that
 * which was installed with this library; where there is none, the place of the first.
 */
std::optional<Installation> FindInstallation(const std::filesystem::path& executable);

/** Returns the absolute path of the running executable; empty when /proc does not give it. */
const std::filesystem::path& RunningExecutable();

} // namespace WatchPort

#endif
