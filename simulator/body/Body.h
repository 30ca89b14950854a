#ifndef SIMULATOR_BODY_BODY_H
#define SIMULATOR_BODY_BODY_H

#include "body/BodyService.h"
#include "body/input/KeyInput.h"
#include "body/input/MouseInput.h"
#include "body/picture/Layout.h"
#include "body/picture/WatchPicture.h"
#include "body/screen/ManagerStandIn.h"
#include "body/screen/NestedScreen.h"
#include "common/ControlClient.h"
#include "common/Options.h"
#include "common/Window.h"

/**
 * The watch in a window: its picture, the mirror of its screen, mouse and keyboard, and its
 * service. It is as large as fits into the window.
 */
class Body
{
public:
    /**
     * The window opens when the keeper has sent the watch's state. The process takes its name on
     * the bus when the first frame is drawn.
     *
     * Throws std::exception with one line when the screen, the bus or the theme is missing.
     */
    explicit Body(const Options& options);

    /** Whether the main loop was ended because the watch's screen has gone. */
    bool HasLostScreen() const { return mHasLostScreen; }

private:
    void Show(const WatchState& state);
    void Resize(int width, int height);
    void ShowScreen(const Eina_Rectangle& area);
    void LoseScreen();

    Layout mLayout;
    ControlClient mControl;
    NestedScreen mScreen;
    Window mWindow;
    const ManagerStandIn mManager;
    WatchPicture mPicture;
    MouseInput mMouse;
    KeyInput mKeys;
    BodyService mService;
    bool mHasLostScreen = false;
};

#endif
