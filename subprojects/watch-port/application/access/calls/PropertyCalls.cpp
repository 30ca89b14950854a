#include "application/access/calls/AccessCall.h"
#include "application/access/objects/TextLayout.h"
#include "system-settings/Settings.h"

#include <cstring>

namespace WatchPort
{

namespace
{
constexpr char kPropertiesInterface[] = "org.freedesktop.DBus.Properties";

void WriteName(const AccessCall& call, AccessWriter& value)
{
    value.AddText(call.object.name);
}

void WriteNoText(const AccessCall&, AccessWriter& value)
{
    value.AddText("");
}

void WriteOwnParent(const AccessCall& call, AccessWriter& value)
{
    WriteParent(call.object, call.desktop, value);
}

void WriteChildCount(const AccessCall& call, AccessWriter& value)
{
    value.AddNumber(static_cast<int>(call.object.children.size()));
}

// Chooses the reader's voice.
void WriteLocale(const AccessCall&, AccessWriter& value)
{
    value.AddText(Settings::GetInstance().ReadLocales().language);
}

void WriteToolkit(const AccessCall&, AccessWriter& value)
{
    value.AddText("watch-port");
}

void WriteVersion(const AccessCall&, AccessWriter& value)
{
    value.AddText("2.1");
}

void WriteNumber(const AccessCall&, AccessWriter& value)
{
    value.AddNumber(0);
}

void WriteOne(const AccessCall&, AccessWriter& value)
{
    value.AddNumber(1);
}

void WriteLength(const AccessCall& call, AccessWriter& value)
{
    value.AddNumber(CountCharacters(call.object.name));
}

constexpr AccessProperty kProperties[] = {
    {kAccessibleInterface, "Name", "s", WriteName},
    {kAccessibleInterface, "Description", "s", WriteNoText},
    {kAccessibleInterface, "Parent", "(so)", WriteOwnParent},
    {kAccessibleInterface, "ChildCount", "i", WriteChildCount},
    {kAccessibleInterface, "Locale", "s", WriteLocale},
    {kAccessibleInterface, "AccessibleId", "s", WriteNoText},
    {kApplicationInterfaceOfReaders, "ToolkitName", "s", WriteToolkit},
    {kApplicationInterfaceOfReaders, "Version", "s", WriteVersion},
    {kApplicationInterfaceOfReaders, "AtspiVersion", "s", WriteVersion},
    {kApplicationInterfaceOfReaders, "Id", "i", WriteNumber},
    {kActionInterface, "NActions", "i", WriteOne},
    {kImageInterface, "ImageDescription", "s", WriteName},
    {kImageInterface, "ImageLocale", "s", WriteLocale},
    {kTextInterface, "CharacterCount", "i", WriteLength},
    {kTextInterface, "CaretOffset", "i", WriteNumber},
};

bool IsOf(const AccessProperty& property, const AccessCall& call, const char* interface)
{
    return std::strcmp(property.interface, interface) == 0 && HasInterface(call.object, interface);
}

void WriteValue(const AccessProperty& property, const AccessCall& call, AccessWriter& answer)
{
    answer.AddVariant(property.signature,
                      [&](AccessWriter& value) { property.write(call, value); });
}

bool AnswerGet(const AccessCall& call)
{
    const char* interface = nullptr;
    const char* name = nullptr;
    if (!call.Take(DBUS_TYPE_STRING, &interface, DBUS_TYPE_STRING, &name))
        return false;
    for (const AccessProperty& property : kProperties)
    {
        if (!IsOf(property, call, interface) || std::strcmp(property.name, name) != 0)
            continue;
        WriteValue(property, call, call.answer);
        return true;
    }
    return false;
}

bool AnswerGetAll(const AccessCall& call)
{
    const char* interface = nullptr;
    if (!call.Take(DBUS_TYPE_STRING, &interface))
        return false;
    call.answer.AddArray("{sv}",
                         [&](AccessWriter& list)
                         {
                             for (const AccessProperty& property : kProperties)
                                 if (IsOf(property, call, interface))
                                     list.AddEntry(
                                         [&](AccessWriter& entry)
                                         {
                                             entry.AddText(property.name);
                                             WriteValue(property, call, entry);
                                         });
                         });
    return true;
}
} // namespace

const AccessMethod kPropertyMethods[] = {
    {kPropertiesInterface, "Get", AnswerGet},
    {kPropertiesInterface, "GetAll", AnswerGetAll},
    {kPropertiesInterface, "Set", nullptr},
    {nullptr, nullptr, nullptr},
};

} // namespace WatchPort
