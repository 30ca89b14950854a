#ifndef WATCH_PORT_APPLICATION_TOOLKIT_H
#define WATCH_PORT_APPLICATION_TOOLKIT_H

#include "application/display/Display.h"
#include "application/fast-start/EarlyFonts.h"

namespace WatchPort
{

/** The toolkit, set up for the watch, as long as the object lives. */
class Toolkit
{
public:
    /**
     * To be called before anything of the toolkit is: takes the user's settings of the toolkit out
     * of the environment, because a scale, theme or finger size meant for a desktop would break the
     * pages of a watch (ELM_ENGINE stays), and has the toolkit start no services of a desktop and
     * ask none about the machine.
     */
    static void Prepare();

    /**
     * Starts the toolkit: a finger drags, flicks and bounces what scrolls, and sizes follow the
     * screen, whose scale is 1.3 at 360 pixels, the base scale of the watch's applications. Nothing
     * is left that wakes the application while it stands still.
     *
     * @param display Looked at during the call.
     */
    Toolkit(int argc, char** argv, const Display& display);
    ~Toolkit();
    Toolkit(const Toolkit&) = delete;
    Toolkit& operator=(const Toolkit&) = delete;

    bool IsUp() const { return mIsUp; }

private:
    // Released when the toolkit has ended.
    EarlyFonts mFonts;
    const bool mIsUp;
};

} // namespace WatchPort

#endif
