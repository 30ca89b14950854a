#ifndef WATCH_PORT_APPLICATION_FAST_START_HELD_THEME_H
#define WATCH_PORT_APPLICATION_FAST_START_HELD_THEME_H

#include <Elementary.h>

namespace WatchPort
{

/**
 * Keeps the toolkit's own theme read, as long as the object lives.
 *
 * A flush of the toolkit's caches drops what is not in use. Before the first window that includes
 * the theme, whose directory is 1.4 MB long and would be read a second time.
 */
class HeldTheme
{
public:
    HeldTheme();
    ~HeldTheme();
    HeldTheme(const HeldTheme&) = delete;
    HeldTheme& operator=(const HeldTheme&) = delete;

private:
    Eina_File* mFile;
    Eina_Iterator* mHold = nullptr;
};

} // namespace WatchPort

#endif
