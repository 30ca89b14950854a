#ifndef SIMULATOR_BODY_BODY_H
#define SIMULATOR_BODY_BODY_H

#include "body/BodyService.h"
#include "body/Layout.h"
#include "body/MouseInput.h"
#include "body/NestedScreen.h"
#include "body/WatchPicture.h"
#include "common/ControlClient.h"
#include "common/Options.h"
#include "common/Window.h"

/** The watch in a window: its picture, its screen's mirror, the mouse on it, and its service. */
class Body
{
public:
    /**
     * The window opens when the keeper has told the watch's state. The process takes its name on
     * the bus when the first frame is drawn.
     *
     * Throws std::exception with one line when the screen, the bus or the theme is not there.
     */
    explicit Body(const Options& options);

    /** Whether the main loop was ended because the watch's screen has gone. */
    bool HasLostScreen() const { return mHasLostScreen; }

private:
    void Show(const WatchState& state);
    void ShowScreen(const Eina_Rectangle& area);
    void LoseScreen();

    const Layout mLayout;
    ControlClient mControl;
    NestedScreen mScreen;
    Window mWindow;
    WatchPicture mPicture;
    MouseInput mMouse;
    BodyService mService;
    bool mHasLostScreen = false;
};

#endif
