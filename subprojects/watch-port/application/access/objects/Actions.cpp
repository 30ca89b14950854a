#include "application/access/objects/Actions.h"

#include "application/access/objects/TextLayout.h"
#include "application/access/objects/ThemeMarks.h"
#include "base/FreeDeleter.h"

#include <Ecore_Evas.h>
#include <Ecore_Input.h>
#include <Elementary.h>
#include <cstdlib>
#include <memory>

namespace WatchPort
{

namespace
{
constexpr int kMostCharacters = 10'000;
constexpr char kBackKey[] = "XF86Back";

using Text = std::unique_ptr<char, FreeDeleter>;

// A screen that moves takes no events, and what is on it none either.
bool TakesEvents(const Evas_Object* object)
{
    for (; object; object = evas_object_smart_parent_get(object))
        if (evas_object_freeze_events_get(object) || evas_object_pass_events_get(object))
            return false;
    return true;
}

bool IsWidget(const Evas_Object* object)
{
    return object && elm_object_widget_check(object);
}

bool CanBeWorked(const Evas_Object* object)
{
    return TakesEvents(object) && !(IsWidget(object) && elm_object_disabled_get(object));
}

void SFreeKeyCB(void*, void* event)
{
    std::free(event);
}

bool PostKey(int type, Ecore_Window window)
{
    auto* const key = static_cast<Ecore_Event_Key*>(std::calloc(1, sizeof(Ecore_Event_Key)));
    if (!key)
        return false;
    key->keyname = key->key = kBackKey;
    key->window = key->event_window = key->root_window = window;
    return ecore_event_add(type, key, SFreeKeyCB, nullptr);
}

bool PressBack(const Evas_Object* windowObject)
{
    const Ecore_Evas* const window = ecore_evas_ecore_evas_get(evas_object_evas_get(windowObject));
    const Ecore_Window id = ecore_evas_window_get(window);
    return PostKey(ECORE_EVENT_KEY_DOWN, id) && PostKey(ECORE_EVENT_KEY_UP, id);
}

// What the widget's theme says when a finger has worked it.
bool SignalWidget(const Evas_Object* widget, const char* signal)
{
    edje_object_signal_emit(elm_layout_edje_get(widget), signal, "elm");
    return true;
}
} // namespace

const char* ActionOf(const Accessible& object)
{
    switch (object.role)
    {
    case AccessRole::Button:
        return "click";
    case AccessRole::CheckBox:
    case AccessRole::RadioButton:
        return "toggle";
    case AccessRole::Frame:
        return "back";
    default:
        return nullptr;
    }
}

bool DoAction(const Accessible& object)
{
    if (object.role == AccessRole::Frame)
        return object.isActive && PressBack(object.object);
    if (!ActionOf(object) || !CanBeWorked(object.object))
        return false;
    switch (object.role)
    {
    case AccessRole::CheckBox:
        return SignalWidget(object.object, "elm,action,check,toggle");
    case AccessRole::RadioButton:
        return SignalWidget(object.object, "elm,action,radio,toggle");
    default:
        return IsWidget(object.object) ? SignalWidget(object.object, "elm,action,click")
                                       : TapThemeButton(object.object);
    }
}

bool IsFocusable(const Accessible& object)
{
    return object.role != AccessRole::Frame && object.role != AccessRole::Page &&
           IsWidget(object.object) && elm_object_focus_allow_get(object.object);
}

bool GiveFocus(const Accessible& object)
{
    if (!IsFocusable(object) || !CanBeWorked(object.object))
        return false;
    Evas_Object* const widget = object.object;
    evas_object_ref(widget);
    elm_object_focus_set(widget, EINA_TRUE);
    evas_object_unref(widget);
    return true;
}

bool IsEditable(const Accessible& object)
{
    return object.role == AccessRole::Entry && elm_entry_editable_get(object.object);
}

std::string ReadEntry(const Accessible& entry)
{
    const Text text(elm_entry_markup_to_utf8(elm_entry_entry_get(entry.object)));
    return text ? text.get() : "";
}

bool WriteEntry(const Accessible& entry, const std::string& text)
{
    if (!CanBeWorked(entry.object) || CountCharacters(text) > kMostCharacters)
        return false;
    const Text markup(elm_entry_utf8_to_markup(text.c_str()));
    if (!markup)
        return false;
    elm_entry_entry_set(entry.object, markup.get());
    return true;
}

} // namespace WatchPort
