#ifndef WATCH_PORT_APPLICATION_PLATFORM_THEME_H
#define WATCH_PORT_APPLICATION_PLATFORM_THEME_H

#include <filesystem>

namespace WatchPort
{

/** The watch's theme, laid over the toolkit's as long as the object lives. */
class PlatformTheme
{
public:
    /** A file that is missing or no theme is reported in one warning line. */
    explicit PlatformTheme(const std::filesystem::path& file);
    ~PlatformTheme();
    PlatformTheme(const PlatformTheme&) = delete;
    PlatformTheme& operator=(const PlatformTheme&) = delete;

private:
    std::filesystem::path mFile;
};

} // namespace WatchPort

#endif
