// An application that draws a sound page, and on it the faults that FAULTS names.

#include <Ecore_Input.h>
#include <Elementary.h>
#include <app.h>
#include <cstdlib>
#include <string>

namespace
{
Evas_Object* sWindow = nullptr;

constexpr int kMiddle = 180;
constexpr int kLetters = 36;
constexpr double kLateS = 3;

bool Has(const std::string& fault)
{
    const char* const all = std::getenv("FAULTS");
    return all && (" " + std::string(all) + " ").find(" " + fault + " ") != std::string::npos;
}

Evas_Object* Write(const char* text, int middle, int y, int size, int grey)
{
    Evas_Object* const letters = evas_object_text_add(evas_object_evas_get(sWindow));
    evas_object_text_font_set(letters, "Sans", size);
    evas_object_text_text_set(letters, text);
    evas_object_color_set(letters, grey, grey, grey, 255);
    int width = 0;
    evas_object_geometry_get(letters, nullptr, nullptr, &width, nullptr);
    evas_object_move(letters, middle - width / 2, y);
    evas_object_show(letters);
    return letters;
}

void Place(Evas_Object* object, int x, int y)
{
    evas_object_move(object, x, y);
    evas_object_resize(object, 60, 40);
    evas_object_show(object);
}

void OfferPaleEntry()
{
    Evas_Object* const entry = elm_entry_add(sWindow);
    // Else the cursor is what is seen best.
    elm_entry_editable_set(entry, EINA_FALSE);
    elm_entry_entry_set(entry, "<color=#646464 font_size=36>Dim</>");
    Place(entry, 130, 220);
    evas_object_resize(entry, 120, 60);
}

void OfferLongEntry()
{
    std::string text;
    for (int line = 1; line <= 150; ++line)
        text += "Line " + std::to_string(line) + ".<br>";
    Evas_Object* const entry = elm_entry_add(sWindow);
    elm_entry_entry_set(entry, text.c_str());
    Place(entry, 100, 100);
    evas_object_resize(entry, 160, 8000);
}

void WriteOutOfSight(const char* text)
{
    Write(text, kMiddle, 500, kLetters, 255);
}

Eina_Bool WriteLate(void*)
{
    WriteOutOfSight("Late");
    return ECORE_CALLBACK_CANCEL;
}

// The bezel changes the page and does not move it: there is no end to turn to.
Eina_Bool Count(void*, int, void* event)
{
    static int sTurns = 8;
    static Evas_Object* sNumber = nullptr;
    if (event)
        sTurns += static_cast<Ecore_Event_Mouse_Wheel*>(event)->z;
    evas_object_del(sNumber);
    sNumber = Write(("Turns: " + std::to_string(sTurns)).c_str(), kMiddle, 200, kLetters, 255);
    return ECORE_CALLBACK_PASS_ON;
}

// Any key has the window leave the screen.
Eina_Bool Leave(void*, int, void*)
{
    elm_win_lower(sWindow);
    return ECORE_CALLBACK_PASS_ON;
}

bool Create(void*)
{
    sWindow = elm_win_add(nullptr, "audited-page", ELM_WIN_BASIC);
    elm_win_title_set(sWindow, "audited-page");
    evas_object_show(sWindow);
    Evas_Object* const background = elm_bg_add(sWindow);
    evas_object_size_hint_weight_set(background, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_win_resize_object_add(sWindow, background);
    evas_object_show(background);
    ecore_event_handler_add(ECORE_EVENT_KEY_DOWN, Leave, nullptr);

    Write("Whole", kMiddle, 140, kLetters, 255);
    if (Has("pale"))
        Write("Pale", kMiddle, 80, kLetters, 100);
    if (Has("grey"))
        Write("Grey", kMiddle, 80, kLetters, 190);
    if (Has("small"))
        Write("Small", kMiddle, 230, 12, 255);
    if (Has("cut"))
        Write("Cut off", 80, 30, kLetters, 255);
    if (Has("escape"))
        Write("\x1b[31mRed\xc2\x9b", kMiddle, 230, 12, 255);
    if (Has("unreached"))
        WriteOutOfSight("Unreached");
    if (Has("late"))
        ecore_timer_add(kLateS, WriteLate, nullptr);
    if (Has("nameless"))
        Place(elm_image_add(sWindow), 150, 280);
    if (Has("upright"))
        Write("Hour", kMiddle, 230, 28, 255);
    if (Has("counts"))
    {
        Count(nullptr, ECORE_EVENT_MOUSE_WHEEL, nullptr);
        ecore_event_handler_add(ECORE_EVENT_MOUSE_WHEEL, Count, nullptr);
    }
    if (Has("pale-entry"))
        OfferPaleEntry();
    if (Has("long-entry"))
        OfferLongEntry();
    if (Has("lost-button"))
    {
        Evas_Object* const button = elm_button_add(sWindow);
        elm_object_text_set(button, "Lost");
        Place(button, 150, 500);
    }
    return true;
}
} // namespace

int main(int argc, char** argv)
{
    ui_app_lifecycle_callback_s callbacks = {};
    callbacks.create = Create;
    return ui_app_main(argc, argv, &callbacks, nullptr);
}
