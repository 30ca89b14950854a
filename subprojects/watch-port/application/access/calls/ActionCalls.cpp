#include "application/access/calls/AccessCall.h"
#include "application/access/objects/Actions.h"
#include "application/access/objects/TextLayout.h"

#include <algorithm>

namespace WatchPort
{

namespace
{
// An object has one action.
bool TakeIndex(const AccessCall& call, const char*& name)
{
    std::int32_t index = 0;
    if (!call.Take(DBUS_TYPE_INT32, &index))
        return false;
    name = index == 0 ? ActionOf(call.object) : nullptr;
    return true;
}

bool AnswerName(const AccessCall& call)
{
    const char* name = nullptr;
    if (!TakeIndex(call, name))
        return false;
    call.answer.AddText(name ? name : "");
    return true;
}

bool AnswerNothing(const AccessCall& call)
{
    const char* name = nullptr;
    if (!TakeIndex(call, name))
        return false;
    call.answer.AddText("");
    return true;
}

bool AnswerActions(const AccessCall& call)
{
    call.answer.AddArray("(sss)",
                         [&call](AccessWriter& list)
                         {
                             list.AddStruct(
                                 [&call](AccessWriter& action)
                                 {
                                     action.AddText(ActionOf(call.object));
                                     action.AddText("");
                                     action.AddText("");
                                 });
                         });
    return true;
}

bool AnswerDoAction(const AccessCall& call)
{
    const char* name = nullptr;
    if (!TakeIndex(call, name))
        return false;
    call.answer.AddTruth(name && DoAction(call.object));
    return true;
}

bool AnswerSetContents(const AccessCall& call)
{
    const char* text = nullptr;
    if (!call.Take(DBUS_TYPE_STRING, &text))
        return false;
    call.answer.AddTruth(WriteEntry(call.object, text));
    return true;
}

// What an entry holds with a part of it replaced; the range may reach beyond it.
bool Replace(const AccessCall& call, TextRange range, const std::string& text)
{
    const std::string before = ReadEntry(call.object);
    const int length = CountCharacters(before);
    range.begin = std::clamp(range.begin, 0, length);
    range.end = range.end < 0 ? length : std::clamp(range.end, range.begin, length);
    return WriteEntry(call.object, TakeCharacters(before, {0, range.begin}) + text +
                                       TakeCharacters(before, {range.end, length}));
}

// Readers count an inserted text in bytes, all else in characters.
std::string TakeBytes(std::string text, std::int32_t length)
{
    if (length < 0 || static_cast<size_t>(length) >= text.size())
        return text;
    auto end = static_cast<size_t>(length);
    while (end > 0 && (text[end] & 0xc0) == 0x80)
        --end;
    text.resize(end);
    return text;
}

bool AnswerInsert(const AccessCall& call)
{
    std::int32_t place = 0;
    const char* text = nullptr;
    std::int32_t length = 0;
    if (!call.Take(DBUS_TYPE_INT32, &place, DBUS_TYPE_STRING, &text, DBUS_TYPE_INT32, &length))
        return false;
    place = std::max(place, 0);
    call.answer.AddTruth(Replace(call, {place, place}, TakeBytes(text, length)));
    return true;
}

bool AnswerDelete(const AccessCall& call)
{
    TextRange range;
    if (!call.Take(DBUS_TYPE_INT32, &range.begin, DBUS_TYPE_INT32, &range.end))
        return false;
    call.answer.AddTruth(Replace(call, range, ""));
    return true;
}
} // namespace

const AccessMethod kActionMethods[] = {
    {kActionInterface, "GetName", AnswerName},
    {kActionInterface, "GetLocalizedName", AnswerName},
    {kActionInterface, "GetDescription", AnswerNothing},
    {kActionInterface, "GetKeyBinding", AnswerNothing},
    {kActionInterface, "GetActions", AnswerActions},
    {kActionInterface, "DoAction", AnswerDoAction},
    {kEditableTextInterface, "SetTextContents", AnswerSetContents},
    {kEditableTextInterface, "InsertText", AnswerInsert},
    {kEditableTextInterface, "DeleteText", AnswerDelete},
    {nullptr, nullptr, nullptr},
};

} // namespace WatchPort
