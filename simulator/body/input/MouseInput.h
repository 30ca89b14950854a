#ifndef SIMULATOR_BODY_INPUT_MOUSE_INPUT_H
#define SIMULATOR_BODY_INPUT_MOUSE_INPUT_H

#include "body/input/DetentDrag.h"
#include "body/picture/Layout.h"
#include "body/screen/NestedScreen.h"
#include "common/ControlClient.h"

#include <Evas.h>
#include <optional>

/**
 * What the mouse does on the watch in its window.
 *
 *   left button on the screen      the finger, also where it is dragged beyond the screen's edge
 *   left button held on a key      the key is pushed until the button is released
 *   dragging the ring              a detent every 15 degrees
 *   a click on the charger         plugs or unplugs it
 *   the wheel, anywhere            a detent a notch, downwards clockwise
 *
 * The keeper decides how keys, ring and charger then look, not this class.
 */
class MouseInput
{
public:
    /**
     * Listens to the mouse above everything on the canvas; all arguments must outlive this object.
     *
     * @param layout Where the watch is, kept up to date by the caller.
     */
    MouseInput(Evas* canvas, const Layout& layout, NestedScreen& screen, ControlClient& control);

    /** Call when the canvas's size has changed. */
    void Resize(int width, int height);

private:
    void Press(Point point);
    void Move(Point point);
    void Release(Point point);

    static void SDownCB(void* data, Evas* canvas, Evas_Object* object, void* event);
    static void SMoveCB(void* data, Evas* canvas, Evas_Object* object, void* event);
    static void SUpCB(void* data, Evas* canvas, Evas_Object* object, void* event);
    static void SWheelCB(void* data, Evas* canvas, Evas_Object* object, void* event);

    Evas_Object* const mHand; ///< transparent; gets the mouse everywhere
    const Layout& mLayout;
    NestedScreen& mScreen;
    ControlClient& mControl;
    Target mHeld = Target::Nothing;
    std::optional<DetentDrag> mDrag;
};

#endif
