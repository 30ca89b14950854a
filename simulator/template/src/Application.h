#ifndef APPLICATION_H
#define APPLICATION_H

#include "common/NaviFrameLowerEventListener.h"
#include <Evas.h>
#include <app.h>
#include <system_settings.h>

/**
 * The application: binds the watch's application framework to the screens.
 *
 * The order of a run: create makes window and object tree, the first launch request opens the page,
 * resume and pause are passed on to the navigation frame, terminate takes everything down. In the
 * background it stays; it ends when the user backs out of the last screen.
 */
class Application : public QivoUi::NaviFrameLowerEventListener
{
public:
    /** Runs the application. @return the program's exit status */
    int Run(int argc, char** argv);

    void OnNaviFrameLowered() override;

private:
    bool Create();
    void Terminate();

    static bool SOnCreate(void* data);
    static void SOnTerminate(void* data);
    static void SOnPause(void* data);
    static void SOnResume(void* data);
    static void SOnAppControl(app_control_h request, void* data);
    static void SOnLanguageChanged(system_settings_key_e key, void* data);

    Evas_Object* mWindow = nullptr;
};

#endif
