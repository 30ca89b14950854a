#ifndef WATCH_PORT_APPLICATION_FAST_START_EARLY_FONTS_H
#define WATCH_PORT_APPLICATION_FAST_START_EARLY_FONTS_H

#include <fontconfig/fontconfig.h>

#include <future>

namespace WatchPort
{

/**
 * Loads the configuration of the fonts on a thread of its own, while the toolkit starts.
 *
 * The toolkit loads it for its first text, by FcInitLoadConfigAndFonts(), and each start parses
 * some sixty files for it, a tenth of all that is done up to the first frame. This class
 * overrides that function (see RTLD_NEXT in dlsym(3)): the first call after Keep() gets the
 * configuration that the thread has loaded, and any other call is passed on. Several threads may
 * call fontconfig at a time, and the thread leaves the process's locale alone. The environment must
 * not change between the construction and Keep().
 */
class EarlyFonts
{
public:
    EarlyFonts();
    /** Releases a configuration that was not used. */
    ~EarlyFonts();
    EarlyFonts(const EarlyFonts&) = delete;
    EarlyFonts& operator=(const EarlyFonts&) = delete;

    /** Waits for the configuration. The next caller of the function gets it and owns it. */
    void Keep();

private:
    std::future<FcConfig*> mLoading;
};

} // namespace WatchPort

#endif
