#ifndef WATCH_PORT_APPLICATION_ACCESS_ACCESSIBLE_H
#define WATCH_PORT_APPLICATION_ACCESS_ACCESSIBLE_H

#include <Evas.h>
#include <string>
#include <vector>

namespace WatchPort
{

/** What an object is, in the numbers of AT-SPI2. */
enum class AccessRole : unsigned
{
    CheckBox = 7,
    Frame = 23,
    Image = 27,
    Label = 29,
    Button = 43,
    RadioButton = 44,
    Application = 75,
    Entry = 79,
    Page = 84,
};

/** An object that a screen reader can know of. */
struct Accessible
{
    /** Never that of another object of the process. */
    unsigned id = 0;
    unsigned parent = 0;
    AccessRole role = AccessRole::Application;
    /** What is drawn, alive until the tree is updated next. */
    Evas_Object* object = nullptr;
    /** In the user's language; of a label its whole text. */
    std::string name;
    /** In the window, in pixels. */
    Eina_Rectangle area{};
    /** Where the window is on the screen. */
    Eina_Position2D origin{};
    /** Some of it is within the window. */
    bool isShowing = false;
    /** A window that has the keyboard. */
    bool isActive = false;
    /** A control that cannot be worked. */
    bool isDisabled = false;
    /** A check or a radio that is on. */
    bool isChecked = false;
    /** The control that has the keyboard, or else where reading begins, in the active window. */
    bool isFocused = false;
    std::vector<unsigned> children;
};

} // namespace WatchPort

#endif
