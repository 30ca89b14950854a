#include "application/access/objects/TextLayout.h"

#include "base/FreeDeleter.h"

#include <algorithm>
#include <memory>
#include <string_view>

namespace WatchPort
{

namespace
{
struct CursorRelease
{
    void operator()(Efl_Text_Cursor_Handle* cursor) const { evas_textblock_cursor_free(cursor); }
};
using Cursor = std::unique_ptr<Efl_Text_Cursor_Handle, CursorRelease>;

bool IsOfType(const Evas_Object* object, std::string_view type)
{
    const char* const own = evas_object_type_get(object);
    return own && own == type;
}

Cursor CursorAt(Evas_Object* block, int character)
{
    Cursor cursor(evas_object_textblock_cursor_new(block));
    evas_textblock_cursor_pos_set(cursor.get(), character);
    return cursor;
}

// Relative to the object; false where there is none.
bool GetCharacterArea(Evas_Object* object, int character, Eina_Rectangle& area)
{
    if (!IsOfType(object, "textblock"))
        return evas_object_text_char_pos_get(object, character, &area.x, &area.y, &area.w, &area.h);
    return evas_textblock_cursor_pen_geometry_get(CursorAt(object, character).get(), &area.x,
                                                  &area.y, &area.w, &area.h) >= 0;
}

std::string PlainTextOf(Evas_Object* block)
{
    const char* const markup = evas_object_textblock_text_markup_get(block);
    const std::unique_ptr<char, FreeDeleter> text(
        evas_textblock_text_markup_to_utf8(block, markup));
    return text ? text.get() : "";
}

std::string Repeat(std::string_view character, int times)
{
    std::string repeated;
    for (; times > 0; --times)
        repeated += character;
    return repeated;
}

size_t ByteOf(const std::string& text, int character)
{
    size_t byte = 0;
    for (; byte < text.size() && character > 0; --character)
        do
            ++byte;
        while (byte < text.size() && (text[byte] & 0xc0) == 0x80);
    return byte;
}
} // namespace

bool DrawsText(const Evas_Object* object)
{
    return IsOfType(object, "textblock") || IsOfType(object, "text");
}

std::string ReadDrawnText(Evas_Object* object)
{
    if (IsOfType(object, "text"))
    {
        const char* const text = evas_object_text_text_get(object);
        return text ? text : "";
    }
    if (!IsOfType(object, "textblock"))
        return {};
    if (const char* const hiding = evas_object_textblock_replace_char_get(object))
        return Repeat(hiding, CountCharacters(PlainTextOf(object)));
    return PlainTextOf(object);
}

TextRange LineAt(Evas_Object* object, int character)
{
    if (!IsOfType(object, "textblock"))
        return {0, CountCharacters(ReadDrawnText(object))};
    const Cursor cursor = CursorAt(object, character);
    evas_textblock_cursor_line_char_first(cursor.get());
    const int begin = evas_textblock_cursor_pos_get(cursor.get());
    // What the toolkit calls a line's last character may stand in the next line, as in Burmese.
    const int line =
        evas_textblock_cursor_line_geometry_get(cursor.get(), nullptr, nullptr, nullptr, nullptr);
    if (!evas_textblock_cursor_line_set(cursor.get(), line + 1))
        return {begin, CountCharacters(ReadDrawnText(object))};
    return {begin, evas_textblock_cursor_pos_get(cursor.get())};
}

Eina_Rectangle AreaOfText(Evas_Object* object, TextRange range)
{
    Eina_Rectangle place{};
    evas_object_geometry_get(object, &place.x, &place.y, nullptr, nullptr);
    Eina_Rectangle area{};
    for (int character = range.begin; character < range.end; ++character)
    {
        Eina_Rectangle one{};
        if (!GetCharacterArea(object, character, one) || one.w == 0)
            continue;
        if (area.w == 0)
            area = one;
        else
            eina_rectangle_union(&area, &one);
    }
    area.x += place.x;
    area.y += place.y;
    return area;
}

int CountCharacters(const std::string& text)
{
    return static_cast<int>(
        std::count_if(text.begin(), text.end(), [](char byte) { return (byte & 0xc0) != 0x80; }));
}

std::string TakeCharacters(const std::string& text, TextRange range)
{
    const size_t begin = ByteOf(text, range.begin);
    const size_t end = range.end < 0 ? text.size() : ByteOf(text, range.end);
    return begin < end ? text.substr(begin, end - begin) : std::string();
}

} // namespace WatchPort
