#include "application/access/calls/AccessCall.h"
#include "application/access/objects/TextLayout.h"

#include <algorithm>

namespace WatchPort
{

namespace
{
// Of GetStringAtOffset; the older GetTextAtOffset has two numbers for each but the first.
enum Granularity : std::uint32_t
{
    kCharacter,
    kWord,
    kSentence,
    kLine,
};

// A word goes on to the next one, so that a reader which asks for them in turn comes to the end.
TextRange WordAt(const std::string& text, int offset, int length)
{
    const auto isBlank = [&text](int character)
    {
        const std::string one = TakeCharacters(text, {character, character + 1});
        return one == " " || one == "\n";
    };
    TextRange word{offset, offset};
    while (word.begin > 0 && isBlank(word.begin))
        --word.begin;
    while (word.begin > 0 && !isBlank(word.begin - 1))
        --word.begin;
    while (word.end < length && !isBlank(word.end))
        ++word.end;
    while (word.end < length && isBlank(word.end))
        ++word.end;
    return word;
}

TextRange RangeAt(const AccessCall& call, int offset, std::uint32_t granularity)
{
    const std::string& text = call.object.name;
    const int length = CountCharacters(text);
    if (offset < 0 || offset >= length)
        return {0, 0};
    switch (granularity)
    {
    case kCharacter:
        return {offset, offset + 1};
    case kWord:
        return WordAt(text, offset, length);
    case kLine:
        return LineAt(call.object.object, offset);
    default:
        return {0, length};
    }
}

bool AnswerPiece(const AccessCall& call, std::uint32_t granularity, int offset)
{
    const TextRange range = RangeAt(call, offset, granularity);
    call.answer.AddText(TakeCharacters(call.object.name, range));
    call.answer.AddNumber(range.begin);
    call.answer.AddNumber(range.end);
    return true;
}

bool AnswerStringAt(const AccessCall& call)
{
    std::int32_t offset = 0;
    std::uint32_t granularity = 0;
    return call.Take(DBUS_TYPE_INT32, &offset, DBUS_TYPE_UINT32, &granularity) &&
           AnswerPiece(call, granularity, offset);
}

bool AnswerTextAt(const AccessCall& call)
{
    std::int32_t offset = 0;
    std::uint32_t boundary = 0;
    return call.Take(DBUS_TYPE_INT32, &offset, DBUS_TYPE_UINT32, &boundary) &&
           AnswerPiece(call, (boundary + 1) / 2, offset);
}

bool AnswerText(const AccessCall& call)
{
    TextRange range;
    if (!call.Take(DBUS_TYPE_INT32, &range.begin, DBUS_TYPE_INT32, &range.end))
        return false;
    call.answer.AddText(TakeCharacters(call.object.name, range));
    return true;
}

// The places of letters are in the window, whose place comes with the object.
Eina_Rectangle AreaOfRange(const AccessCall& call, TextRange range, std::uint32_t coordinates)
{
    const int length = CountCharacters(call.object.name);
    range.begin = std::clamp(range.begin, 0, length);
    range.end = range.end < 0 ? length : std::min(range.end, length);
    Accessible letters = call.object;
    letters.area = AreaOfText(call.object.object, range);
    return AreaIn({call.tree, call.desktop, letters, call.message, call.answer}, coordinates);
}

bool WriteSides(const Eina_Rectangle& area, AccessWriter& answer)
{
    for (const int side : {area.x, area.y, area.w, area.h})
        answer.AddNumber(side);
    return true;
}

bool AnswerCharacterExtents(const AccessCall& call)
{
    std::int32_t offset = 0;
    std::uint32_t coordinates = 0;
    return call.Take(DBUS_TYPE_INT32, &offset, DBUS_TYPE_UINT32, &coordinates) &&
           WriteSides(AreaOfRange(call, RangeAt(call, offset, kCharacter), coordinates),
                      call.answer);
}

bool AnswerRangeExtents(const AccessCall& call)
{
    TextRange range;
    std::uint32_t coordinates = 0;
    return call.Take(DBUS_TYPE_INT32, &range.begin, DBUS_TYPE_INT32, &range.end, DBUS_TYPE_UINT32,
                     &coordinates) &&
           WriteSides(AreaOfRange(call, range, coordinates), call.answer);
}

bool AnswerNoSelection(const AccessCall& call)
{
    call.answer.AddNumber(0);
    return true;
}

bool AnswerNoCaret(const AccessCall& call)
{
    call.answer.AddTruth(false);
    return true;
}
} // namespace

const AccessMethod kTextMethods[] = {
    {kTextInterface, "GetText", AnswerText},
    {kTextInterface, "GetStringAtOffset", AnswerStringAt},
    {kTextInterface, "GetTextAtOffset", AnswerTextAt},
    {kTextInterface, "GetCharacterExtents", AnswerCharacterExtents},
    {kTextInterface, "GetRangeExtents", AnswerRangeExtents},
    {kTextInterface, "GetNSelections", AnswerNoSelection},
    {kTextInterface, "SetCaretOffset", AnswerNoCaret},
    {nullptr, nullptr, nullptr},
};

} // namespace WatchPort
