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
 * some sixty files for it, a tenth of all that is done up to the first frame. This part of the port
 * stands before that function (see RTLD_NEXT in dlsym(3)): the first call after Keep() is given
 * what has been loaded meanwhile, each other one is passed on. fontconfig may be called by several
 * threads at a time; the thread takes the locale from nobody. Nobody may change the environment
 * between the construction and Keep().
 */
class EarlyFonts
{
public:
    EarlyFonts();
    /** Releases a configuration that nobody has asked for. */
    ~EarlyFonts();
    EarlyFonts(const EarlyFonts&) = delete;
    EarlyFonts& operator=(const EarlyFonts&) = delete;

    /** Waits for the configuration, which the next one who asks is given, as its owner. */
    void Keep();

private:
    std::future<FcConfig*> mLoading;
};

} // namespace WatchPort

#endif
