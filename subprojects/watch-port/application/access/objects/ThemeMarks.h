#ifndef WATCH_PORT_APPLICATION_ACCESS_THEME_MARKS_H
#define WATCH_PORT_APPLICATION_ACCESS_THEME_MARKS_H

#include <Evas.h>
#include <vector>

namespace WatchPort
{

/** What a group of a theme says to screen readers about its parts; nothing for other objects. */
class ThemeMarks
{
public:
    /** @param object Outlives the object, and its parts stay as they are meanwhile. */
    explicit ThemeMarks(const Evas_Object* object);

    /** A text or what a part holds: nothing that a reader is to know. */
    bool IsDecoration(const Evas_Object* member) const;

    /** The parts that a finger taps. */
    const std::vector<Evas_Object*>& Buttons() const { return mButtons; }

    /** The button on which the middle of a member is; null without one. */
    Evas_Object* FindButtonAt(const Evas_Object* member) const;

private:
    std::vector<Evas_Object*> mDecoration;
    std::vector<Evas_Object*> mButtons;
};

/** Taps a button of a theme, as a finger would; false when it is none. */
bool TapThemeButton(Evas_Object* button);

} // namespace WatchPort

#endif
