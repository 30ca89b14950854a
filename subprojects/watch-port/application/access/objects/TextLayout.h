#ifndef WATCH_PORT_APPLICATION_ACCESS_TEXT_LAYOUT_H
#define WATCH_PORT_APPLICATION_ACCESS_TEXT_LAYOUT_H

#include <Evas.h>
#include <string>

namespace WatchPort
{

/** Characters of a text from `begin` up to `end`, which is not among them. */
struct TextRange
{
    int begin = 0;
    int end = 0;
};

/** Whether the object draws text by itself. */
bool DrawsText(const Evas_Object* object);

/**
 * The text that an object draws, without markup: of a password what hides it. Empty for an object
 * that draws none.
 */
std::string ReadDrawnText(Evas_Object* object);

/** The line in which a character is drawn. */
TextRange LineAt(Evas_Object* object, int character);

/** Where characters are drawn, in the canvas; empty without characters. */
Eina_Rectangle AreaOfText(Evas_Object* object, TextRange range);

/** Counts the characters of UTF-8. */
int CountCharacters(const std::string& text);

/** The characters of a range, which may reach beyond the text; an end below 0 is that of the text.
 */
std::string TakeCharacters(const std::string& text, TextRange range);

} // namespace WatchPort

#endif
