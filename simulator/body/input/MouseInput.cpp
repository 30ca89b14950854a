#include "body/input/MouseInput.h"

namespace
{
constexpr int kLeftButton = 1;
}

MouseInput::MouseInput(Evas* canvas, const Layout& layout, NestedScreen& screen,
                       ControlClient& control)
    : mHand(evas_object_rectangle_add(canvas)), mLayout(layout), mScreen(screen), mControl(control)
{
    evas_object_color_set(mHand, 0, 0, 0, 0);
    evas_object_show(mHand);
    evas_object_event_callback_add(mHand, EVAS_CALLBACK_MOUSE_DOWN, SDownCB, this);
    evas_object_event_callback_add(mHand, EVAS_CALLBACK_MOUSE_MOVE, SMoveCB, this);
    evas_object_event_callback_add(mHand, EVAS_CALLBACK_MOUSE_UP, SUpCB, this);
    evas_object_event_callback_add(mHand, EVAS_CALLBACK_MOUSE_WHEEL, SWheelCB, this);
}

void MouseInput::Resize(int width, int height)
{
    evas_object_resize(mHand, width, height);
}

void MouseInput::Press(Point point)
{
    mHeld = mLayout.GetTargetAt(point);
    const Point pixel = mLayout.GetScreenPixelAt(point);
    switch (mHeld)
    {
    case Target::Screen:
        mScreen.PressTouch(pixel.x, pixel.y);
        break;
    case Target::Ring:
        mDrag.emplace(mLayout.GetAngleAt(point));
        break;
    case Target::BackKey:
        mControl.PushKey("back");
        break;
    case Target::PowerKey:
        mControl.PushKey("power");
        break;
    case Target::Charger:
    case Target::Nothing:
        break;
    }
}

void MouseInput::Move(Point point)
{
    const Point pixel = mLayout.GetScreenPixelAt(point);
    if (mHeld == Target::Screen)
        mScreen.MoveTouch(pixel.x, pixel.y);
    else if (mHeld == Target::Ring)
        mControl.TurnBezel(mDrag->MoveTo(mLayout.GetAngleAt(point)));
}

void MouseInput::Release(Point point)
{
    const Point pixel = mLayout.GetScreenPixelAt(point);
    if (mHeld == Target::Screen)
        mScreen.ReleaseTouch(pixel.x, pixel.y);
    else if (mHeld == Target::BackKey)
        mControl.ReleaseKey("back");
    else if (mHeld == Target::PowerKey)
        mControl.ReleaseKey("power");
    else if (mHeld == Target::Charger && mLayout.GetTargetAt(point) == Target::Charger)
        mControl.SetPlugged(!mControl.GetState().isPlugged);
    mHeld = Target::Nothing;
}

void MouseInput::SDownCB(void* data, Evas* /*canvas*/, Evas_Object* /*object*/, void* event)
{
    const auto* down = static_cast<Evas_Event_Mouse_Down*>(event);
    if (down->button == kLeftButton)
        static_cast<MouseInput*>(data)->Press({down->canvas.x, down->canvas.y});
}

void MouseInput::SMoveCB(void* data, Evas* /*canvas*/, Evas_Object* /*object*/, void* event)
{
    const auto* move = static_cast<Evas_Event_Mouse_Move*>(event);
    static_cast<MouseInput*>(data)->Move({move->cur.canvas.x, move->cur.canvas.y});
}

void MouseInput::SUpCB(void* data, Evas* /*canvas*/, Evas_Object* /*object*/, void* event)
{
    const auto* up = static_cast<Evas_Event_Mouse_Up*>(event);
    if (up->button == kLeftButton)
        static_cast<MouseInput*>(data)->Release({up->canvas.x, up->canvas.y});
}

void MouseInput::SWheelCB(void* data, Evas* /*canvas*/, Evas_Object* /*object*/, void* event)
{
    static_cast<MouseInput*>(data)->mControl.TurnBezel(
        static_cast<Evas_Event_Mouse_Wheel*>(event)->z);
}
