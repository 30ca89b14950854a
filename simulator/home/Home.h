#ifndef SIMULATOR_HOME_HOME_H
#define SIMULATOR_HOME_HOME_H

#include "common/ControlClient.h"
#include "common/Options.h"
#include "common/Window.h"
#include "home/Face.h"
#include "home/WatchClock.h"

#include <Ecore.h>

/**
 * The watch's home: a window as large as the screen, below the applications.
 *
 * It wakes once a minute, at the watch's full minute, and never while the watch's time is frozen or
 * its screen off. When the screen goes off, the window turns black and covers all others, and stays
 * above them when the screen is on again.
 */
class Home
{
public:
    /**
     * The window opens when the keeper has sent the watch's state. The process takes its name on
     * the bus when the first frame is drawn.
     *
     * Throws std::exception with one line when the bus, the display or the theme is missing.
     */
    explicit Home(const Options& options);
    ~Home();
    Home(const Home&) = delete;
    Home& operator=(const Home&) = delete;

private:
    void Show(const WatchState& state, bool isTimeTold);
    void ShowTime();
    void StopTimer();

    static Eina_Bool SWheelCB(void* data, int type, void* event);
    static Eina_Bool SMinuteCB(void* data);

    ControlClient mControl;
    Window mWindow;
    Face mFace;
    WatchClock mClock;
    bool mIsScreenOn = true;
    Ecore_Timer* mTimer = nullptr;
    Ecore_Event_Handler* mWheel;
};

#endif
