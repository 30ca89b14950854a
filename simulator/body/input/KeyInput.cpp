#include "body/input/KeyInput.h"

#include <Ecore_Input.h>
#include <map>

namespace
{
constexpr unsigned int kDesktopModifiers =
    ECORE_EVENT_MODIFIER_CTRL | ECORE_EVENT_MODIFIER_ALT | ECORE_EVENT_MODIFIER_WIN;

constexpr char kChargerKey[] = "c";

// The X server's names of the keys.
const std::map<std::string, const char*> kWatchKeys = {
    {"Escape", "back"}, {"BackSpace", "back"}, {"XF86Back", "back"}, {"p", "power"}};
const std::map<std::string, int> kTurningKeys = {
    {"Right", 1}, {"Down", 1}, {"Left", -1}, {"Up", -1}};
} // namespace

KeyInput::KeyInput(Evas* canvas, ControlClient& control)
    : mCanvas(canvas), mControl(control),
      mDownHandler(ecore_event_handler_add(ECORE_EVENT_KEY_DOWN, SDownCB, this)),
      mUpHandler(ecore_event_handler_add(ECORE_EVENT_KEY_UP, SUpCB, this))
{
    evas_event_callback_add(canvas, EVAS_CALLBACK_CANVAS_FOCUS_OUT, SFocusOutCB, this);
}

KeyInput::~KeyInput()
{
    evas_event_callback_del_full(mCanvas, EVAS_CALLBACK_CANVAS_FOCUS_OUT, SFocusOutCB, this);
    ecore_event_handler_del(mUpHandler);
    ecore_event_handler_del(mDownHandler);
}

// A held key repeats its press without a release.
void KeyInput::Press(const std::string& name)
{
    const bool isFresh = mHeld.insert(name).second;
    const auto detents = kTurningKeys.find(name);
    const auto key = kWatchKeys.find(name);
    if (detents != kTurningKeys.end())
        mControl.TurnBezel(detents->second);
    else if (isFresh && key != kWatchKeys.end())
        mControl.PushKey(key->second);
    else if (isFresh && name == kChargerKey)
        mControl.SetPlugged(!mControl.GetState().isPlugged);
}

void KeyInput::Release(const std::string& name)
{
    const bool wasHeld = mHeld.erase(name) > 0;
    const auto key = kWatchKeys.find(name);
    if (wasHeld && key != kWatchKeys.end())
        mControl.ReleaseKey(key->second);
}

void KeyInput::ReleaseAll()
{
    while (!mHeld.empty())
        Release(std::string(*mHeld.begin()));
}

// The name that a key has without Shift and in the keyboard's first layout.
Eina_Bool KeyInput::SDownCB(void* data, int /*type*/, void* event)
{
    const auto* down = static_cast<Ecore_Event_Key*>(event);
    if ((down->modifiers & kDesktopModifiers) == 0)
        static_cast<KeyInput*>(data)->Press(down->keyname);
    return ECORE_CALLBACK_PASS_ON;
}

Eina_Bool KeyInput::SUpCB(void* data, int /*type*/, void* event)
{
    static_cast<KeyInput*>(data)->Release(static_cast<Ecore_Event_Key*>(event)->keyname);
    return ECORE_CALLBACK_PASS_ON;
}

void KeyInput::SFocusOutCB(void* data, Evas* /*canvas*/, void* /*event*/)
{
    static_cast<KeyInput*>(data)->ReleaseAll();
}
