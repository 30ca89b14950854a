#include "application/access/calls/AccessCall.h"
#include "application/access/objects/Actions.h"
#include "system-settings/Settings.h"

#include <algorithm>

namespace WatchPort
{

namespace
{
// In the numbers of AT-SPI2.
enum State
{
    kActive = 1,
    kChecked = 4,
    kEditable = 7,
    kEnabled = 8,
    kFocusable = 11,
    kFocused = 12,
    kMultiLine = 17,
    kSensitive = 24,
    kShowing = 25,
    kVisible = 30,
};

constexpr const char* kInterfaces[] = {
    kAccessibleInterface, kActionInterface,       kApplicationInterfaceOfReaders,
    kComponentInterface,  kEditableTextInterface, kImageInterface,
    kTextInterface};

const char* RoleName(AccessRole role)
{
    switch (role)
    {
    case AccessRole::CheckBox:
        return "check box";
    case AccessRole::Frame:
        return "frame";
    case AccessRole::Image:
        return "image";
    case AccessRole::Label:
        return "label";
    case AccessRole::Button:
        return "push button";
    case AccessRole::RadioButton:
        return "radio button";
    case AccessRole::Application:
        return "application";
    case AccessRole::Entry:
        return "entry";
    case AccessRole::Page:
        return "page";
    }
    return "";
}

std::uint64_t StatesOf(const Accessible& object)
{
    std::uint64_t states = 1ULL << kVisible;
    const auto add = [&states](bool isSet, State state) { states |= isSet ? 1ULL << state : 0; };
    add(!object.isDisabled, kEnabled);
    add(!object.isDisabled, kSensitive);
    add(object.isChecked, kChecked);
    add(IsEditable(object), kEditable);
    add(object.isShowing, kShowing);
    add(object.isActive, kActive);
    add(object.isFocused, kFocused);
    add(object.role == AccessRole::Label || IsFocusable(object), kFocusable);
    add(object.role == AccessRole::Label, kMultiLine);
    return states;
}

void WriteStates(const Accessible& object, AccessWriter& answer)
{
    const std::uint64_t states = StatesOf(object);
    answer.AddArray("u",
                    [states](AccessWriter& list)
                    {
                        list.AddUnsigned(static_cast<std::uint32_t>(states));
                        list.AddUnsigned(static_cast<std::uint32_t>(states >> 32));
                    });
}

void WriteInterfaces(const Accessible& object, AccessWriter& answer)
{
    answer.AddArray("s",
                    [&object](AccessWriter& list)
                    {
                        for (const char* interface : kInterfaces)
                            if (HasInterface(object, interface))
                                list.AddText(interface);
                    });
}

bool AnswerChild(const AccessCall& call)
{
    std::int32_t index = 0;
    if (!call.Take(DBUS_TYPE_INT32, &index))
        return false;
    const auto& children = call.object.children;
    if (index >= 0 && static_cast<size_t>(index) < children.size())
        call.answer.AddReference(children[static_cast<size_t>(index)]);
    else
        call.answer.AddReference("", "");
    return true;
}

bool AnswerChildren(const AccessCall& call)
{
    call.answer.AddArray("(so)",
                         [&call](AccessWriter& list)
                         {
                             for (const unsigned child : call.object.children)
                                 list.AddReference(child);
                         });
    return true;
}

bool AnswerIndex(const AccessCall& call)
{
    call.answer.AddNumber(IndexInParent(call.tree, call.object));
    return true;
}

bool AnswerRelations(const AccessCall& call)
{
    call.answer.AddArray("(ua(so))", [](AccessWriter&) {});
    return true;
}

bool AnswerRole(const AccessCall& call)
{
    call.answer.AddUnsigned(static_cast<unsigned>(call.object.role));
    return true;
}

bool AnswerRoleName(const AccessCall& call)
{
    call.answer.AddText(RoleName(call.object.role));
    return true;
}

bool AnswerStates(const AccessCall& call)
{
    WriteStates(call.object, call.answer);
    return true;
}

bool AnswerAttributes(const AccessCall& call)
{
    call.answer.AddArray("{ss}",
                         [](AccessWriter& list)
                         {
                             list.AddEntry(
                                 [](AccessWriter& entry)
                                 {
                                     entry.AddText("toolkit");
                                     entry.AddText("watch-port");
                                 });
                         });
    return true;
}

bool AnswerApplication(const AccessCall& call)
{
    call.answer.AddReference(AccessTree::kRoot);
    return true;
}

bool AnswerInterfaces(const AccessCall& call)
{
    WriteInterfaces(call.object, call.answer);
    return true;
}

bool AnswerLocale(const AccessCall& call)
{
    call.answer.AddText(Settings::GetInstance().ReadLocales().language);
    return true;
}

void WriteItem(const AccessTree& tree, const Accessible& object, const AccessDesktop& desktop,
               AccessWriter& item)
{
    item.AddReference(object.id);
    item.AddReference(AccessTree::kRoot);
    WriteParent(object, desktop, item);
    item.AddNumber(IndexInParent(tree, object));
    item.AddNumber(static_cast<int>(object.children.size()));
    WriteInterfaces(object, item);
    item.AddText(object.name);
    item.AddUnsigned(static_cast<unsigned>(object.role));
    item.AddText("");
    WriteStates(object, item);
}
} // namespace

const AccessMethod kObjectMethods[] = {
    {kAccessibleInterface, "GetChildAtIndex", AnswerChild},
    {kAccessibleInterface, "GetChildren", AnswerChildren},
    {kAccessibleInterface, "GetIndexInParent", AnswerIndex},
    {kAccessibleInterface, "GetRelationSet", AnswerRelations},
    {kAccessibleInterface, "GetRole", AnswerRole},
    {kAccessibleInterface, "GetRoleName", AnswerRoleName},
    {kAccessibleInterface, "GetLocalizedRoleName", AnswerRoleName},
    {kAccessibleInterface, "GetState", AnswerStates},
    {kAccessibleInterface, "GetAttributes", AnswerAttributes},
    {kAccessibleInterface, "GetApplication", AnswerApplication},
    {kAccessibleInterface, "GetInterfaces", AnswerInterfaces},
    {kApplicationInterfaceOfReaders, "GetLocale", AnswerLocale},
    {nullptr, nullptr, nullptr},
};

bool HasInterface(const Accessible& object, const std::string& interface)
{
    const bool isRoot = object.role == AccessRole::Application;
    if (interface == kApplicationInterfaceOfReaders)
        return isRoot;
    if (interface == kActionInterface)
        return ActionOf(object);
    if (interface == kEditableTextInterface)
        return IsEditable(object);
    if (interface == kComponentInterface)
        return !isRoot;
    if (interface == kImageInterface)
        return object.role == AccessRole::Image;
    if (interface == kTextInterface)
        return object.role == AccessRole::Label;
    return interface == kAccessibleInterface;
}

int IndexInParent(const AccessTree& tree, const Accessible& object)
{
    if (object.role == AccessRole::Application)
        return -1;
    const auto& siblings = tree.Find(object.parent)->children;
    return static_cast<int>(std::find(siblings.begin(), siblings.end(), object.id) -
                            siblings.begin());
}

void WriteParent(const Accessible& object, const AccessDesktop& desktop, AccessWriter& answer)
{
    if (object.role == AccessRole::Application)
        answer.AddReference(desktop.bus, desktop.path);
    else
        answer.AddReference(object.parent);
}

void WriteItems(const AccessTree& tree, const AccessDesktop& desktop, AccessWriter& answer)
{
    answer.AddArray("((so)(so)(so)iiassusau)",
                    [&](AccessWriter& list)
                    {
                        for (const auto& [id, object] : tree.All())
                            list.AddStruct([&, &shown = object](AccessWriter& item)
                                           { WriteItem(tree, shown, desktop, item); });
                    });
}

} // namespace WatchPort
