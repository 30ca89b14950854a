#ifndef SIMULATOR_BODY_INPUT_KEY_INPUT_H
#define SIMULATOR_BODY_INPUT_KEY_INPUT_H

#include "common/ControlClient.h"

#include <Ecore.h>
#include <Evas.h>
#include <set>
#include <string>

/**
 * What the keyboard does on the watch while its window has the focus.
 *
 *   Escape or Backspace            the back key, as long as it is held
 *   P                              the power key, as long as it is held
 *   Right and Down, Left and Up    a detent clockwise, counter-clockwise; repeats while held
 *   C                              plugs or unplugs the charger
 *
 * With Ctrl, Alt or the Windows key they belong to the desktop. A window that loses the focus gets
 * no release, so the watch's keys are released then.
 */
class KeyInput
{
public:
    /** @param canvas The window's; both outlive this object. */
    KeyInput(Evas* canvas, ControlClient& control);
    ~KeyInput();
    KeyInput(const KeyInput&) = delete;
    KeyInput& operator=(const KeyInput&) = delete;

private:
    void Press(const std::string& name);
    void Release(const std::string& name);
    void ReleaseAll();

    static Eina_Bool SDownCB(void* data, int type, void* event);
    static Eina_Bool SUpCB(void* data, int type, void* event);
    static void SFocusOutCB(void* data, Evas* canvas, void* event);

    Evas* const mCanvas;
    ControlClient& mControl;
    std::set<std::string> mHeld; ///< names of the keyboard's keys
    Ecore_Event_Handler* const mDownHandler;
    Ecore_Event_Handler* const mUpHandler;
};

#endif
