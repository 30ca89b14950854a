#include "application/access/AccessWriter.h"

#include "application/access/AccessTree.h"
#include "base/Utf8.h"

#include <algorithm>
#include <string_view>

namespace WatchPort
{

namespace
{
constexpr char kPathPrefix[] = "/org/a11y/atspi/accessible/";
constexpr char kNothing[] = "/org/a11y/atspi/null";
constexpr std::string_view kReplacement = "\xef\xbf\xbd";

// The bus library ends a process that sends anything else.
std::string ToUtf8(std::string_view text)
{
    std::string valid;
    while (!text.empty())
    {
        const size_t length = Utf8CharacterLength(text);
        valid += length == 0 ? kReplacement : text.substr(0, length);
        text.remove_prefix(std::max<size_t>(length, 1));
    }
    return valid;
}
} // namespace

AccessWriter::AccessWriter(DBusMessage* message, const char* bus) : mBus(bus)
{
    dbus_message_iter_init_append(message, &mIter);
}

void AccessWriter::AddText(const std::string& text)
{
    AppendText(&mIter, ToUtf8(text));
}

void AccessWriter::AddTruth(bool isTrue)
{
    const dbus_bool_t value = isTrue ? TRUE : FALSE;
    Add(DBUS_TYPE_BOOLEAN, &value);
}

void AccessWriter::AddReference(unsigned id)
{
    AddReference(mBus, AccessPath(id));
}

void AccessWriter::AddReference(const std::string& bus, const std::string& path)
{
    AddStruct(
        [&](AccessWriter& inside)
        {
            inside.AddText(bus);
            const char* const value = bus.empty() ? kNothing : path.c_str();
            inside.Add(DBUS_TYPE_OBJECT_PATH, &value);
        });
}

void AccessWriter::Add(int type, const void* value)
{
    RequireMemory(dbus_message_iter_append_basic(&mIter, type, value));
}

std::string AccessPath(unsigned id)
{
    return kPathPrefix + (id == AccessTree::kRoot ? "root" : std::to_string(id));
}

} // namespace WatchPort
