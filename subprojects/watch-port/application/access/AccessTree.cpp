#include "application/access/AccessTree.h"

#include "application/access/objects/TextLayout.h"
#include "application/access/objects/ThemeMarks.h"
#include "application/windows/Shape.h"
#include "application/windows/Windows.h"

#include <Edje.h>
#include <Elementary.h>
#include <algorithm>
#include <cerrno>
#include <libintl.h>
#include <string_view>
#include <utility>

namespace WatchPort
{

namespace
{
constexpr char kNameItem[] = "accessible-name";

struct WidgetRole
{
    std::string_view type;
    AccessRole role;
};

// Those that a finger works.
constexpr WidgetRole kControls[] = {
    {"elm_button", AccessRole::Button},
    {"elm_check", AccessRole::CheckBox},
    {"elm_radio", AccessRole::RadioButton},
    {"elm_entry", AccessRole::Entry},
};

std::string_view TypeOf(const Evas_Object* object)
{
    const char* const type = evas_object_type_get(object);
    return type ? type : "";
}

const WidgetRole* FindControl(const Evas_Object* object)
{
    const auto* const found =
        std::find_if(std::begin(kControls), std::end(kControls),
                     [type = TypeOf(object)](const WidgetRole& role) { return role.type == type; });
    return found == std::end(kControls) ? nullptr : found;
}

bool IsOpaque(const Evas_Object* object)
{
    int alpha = 0;
    evas_object_color_get(object, nullptr, nullptr, nullptr, &alpha);
    return evas_object_visible_get(object) && alpha > 0;
}

// Wherever it is: what a page has scrolled away is there to be read.
bool IsDrawn(const Evas_Object* object)
{
    for (; object; object = evas_object_clip_get(object))
        if (!IsOpaque(object))
            return false;
    return true;
}

bool IsPicture(const Evas_Object* object)
{
    return TypeOf(object) == "elm_image" || TypeOf(object) == "elm_icon";
}

bool IsPage(const Evas_Object* object)
{
    const Evas_Object* const parent =
        elm_object_widget_check(object) ? elm_object_parent_widget_get(object) : nullptr;
    return parent && TypeOf(parent) == "elm_naviframe";
}

const char* FindNameId(const Evas_Object* object)
{
    return object && TypeOf(object) == "edje" ? edje_object_data_get(object, kNameItem) : nullptr;
}

std::string Translate(const char* id)
{
    return id && *id ? gettext(id) : "";
}

Eina_Rectangle PlaceOf(const Evas_Object* object)
{
    Eina_Rectangle area{};
    evas_object_geometry_get(object, &area.x, &area.y, &area.w, &area.h);
    return area;
}

Eina_Rectangle SizeOfCanvas(const Evas_Object* object)
{
    Eina_Rectangle area{};
    evas_output_size_get(evas_object_evas_get(object), &area.w, &area.h);
    return area;
}

bool HasLetters(const std::string& text)
{
    return text.find_first_not_of(" \n\t") != std::string::npos;
}
} // namespace

AccessTree::AccessTree(const Display& display) : mDisplay(display)
{
}

const Accessible* AccessTree::Find(unsigned id) const
{
    const auto found = mObjects.find(id);
    return found == mObjects.end() ? nullptr : &found->second;
}

void AccessTree::Update()
{
    mObjects.clear();
    mFormerIds = std::exchange(mIds, {});
    Accessible& root = mObjects[kRoot];
    root.role = AccessRole::Application;
    root.name = program_invocation_short_name;
    for (Ecore_Evas* window : ListWindows(mDisplay))
        if (!IsHidden(window))
            AddWindow(window);
}

unsigned AccessTree::Add(unsigned parent, AccessRole role, Evas_Object* object)
{
    const auto former = mFormerIds.find(object);
    const unsigned id = former == mFormerIds.end() ? ++mLastId : former->second;
    mIds[object] = id;
    Accessible& added = mObjects[id];
    added.id = id;
    added.parent = parent;
    added.role = role;
    added.object = object;
    added.origin = mObjects[parent].origin;
    added.area = PlaceOf(object);
    const Eina_Rectangle canvas = SizeOfCanvas(object);
    added.isShowing = eina_rectangles_intersect(&added.area, &canvas);
    mObjects[parent].children.push_back(id);
    return id;
}

void AccessTree::AddWindow(Ecore_Evas* window)
{
    Evas_Object* const object = WindowObject(window);
    const unsigned id = Add(kRoot, AccessRole::Frame, object);
    Accessible& frame = mObjects[id];
    const char* const title = elm_win_title_get(object);
    frame.name = title ? title : "";
    // A window's own place is that on the desktop.
    frame.area = SizeOfCanvas(object);
    ecore_evas_geometry_get(window, &frame.origin.x, &frame.origin.y, nullptr, nullptr);
    frame.isShowing = true;
    frame.isActive = ecore_evas_focus_get(window);
    for (Evas_Object* top = evas_object_bottom_get(ecore_evas_get(window)); top;
         top = evas_object_above_get(top))
        AddWithin(top, id);
    Accessible* const focused = frame.isActive ? FindFocus(id) : nullptr;
    if (focused)
        focused->isFocused = true;
}

// A page of texts has nothing that the toolkit would focus.
Accessible* AccessTree::FindFocus(unsigned window)
{
    for (auto& [id, object] : mObjects)
        if (FindControl(object.object) && elm_object_focus_get(object.object) &&
            evas_object_evas_get(object.object) == evas_object_evas_get(mObjects[window].object))
            return &object;
    return FindFirstText(window);
}

void AccessTree::AddWithin(Evas_Object* object, unsigned parent)
{
    if (!IsDrawn(object) || AddLeaf(object, parent))
        return;
    if (IsPage(object))
        parent = Add(parent, AccessRole::Page, object);
    const WidgetRole* const control = FindControl(object);
    if (control)
        parent = AddControl(parent, control->role, object);
    if (!IsShape(object))
        AddMembers(object, parent);
    if (control)
        mObjects[parent].name = JoinTexts(parent);
}

unsigned AccessTree::AddControl(unsigned parent, AccessRole role, Evas_Object* widget)
{
    const unsigned id = Add(parent, role, widget);
    Accessible& control = mObjects[id];
    control.isDisabled = elm_object_disabled_get(widget);
    if (role == AccessRole::CheckBox)
        control.isChecked = elm_check_state_get(widget);
    if (role == AccessRole::RadioButton)
        control.isChecked = elm_radio_state_value_get(widget) == elm_radio_value_get(widget);
    return id;
}

// In the order in which they are drawn; a button where the first thing on it is.
void AccessTree::AddMembers(Evas_Object* object, unsigned parent)
{
    const ThemeMarks marks(object);
    std::map<Evas_Object*, unsigned> buttons;
    const auto addButton = [&](Evas_Object* button)
    {
        const auto known = buttons.find(button);
        return known == buttons.end() ? buttons[button] = Add(parent, AccessRole::Button, button)
                                      : known->second;
    };
    Eina_List* members = evas_object_smart_members_get(object);
    for (; members; members = eina_list_remove_list(members, members))
    {
        auto* const member = static_cast<Evas_Object*>(eina_list_data_get(members));
        if (marks.IsDecoration(member))
            continue;
        Evas_Object* const button =
            (!IsShape(member) || DrawsText(member)) ? marks.FindButtonAt(member) : nullptr;
        AddWithin(member, button ? addButton(button) : parent);
    }
    for (Evas_Object* button : marks.Buttons())
    {
        const unsigned id = addButton(button);
        mObjects[id].name = JoinTexts(id);
    }
}

// What has nothing within it that is to be told apart.
bool AccessTree::AddLeaf(Evas_Object* object, unsigned parent)
{
    const bool isPicture = IsPicture(object);
    const char* const nameId = FindNameId(isPicture ? elm_image_object_get(object) : object);
    if (isPicture || nameId)
    {
        mObjects[Add(parent, AccessRole::Image, object)].name = Translate(nameId);
        return true;
    }
    if (!DrawsText(object))
        return false;
    const std::string text = ReadDrawnText(object);
    if (HasLetters(text))
        mObjects[Add(parent, AccessRole::Label, object)].name = text;
    return true;
}

std::string AccessTree::JoinTexts(unsigned parent) const
{
    std::string joined;
    for (const unsigned child : mObjects.at(parent).children)
    {
        const std::string& name = mObjects.at(child).name;
        joined += joined.empty() || name.empty() ? name : " " + name;
    }
    return joined;
}

Accessible* AccessTree::FindFirstText(unsigned parent)
{
    for (const unsigned child : mObjects.at(parent).children)
    {
        Accessible& object = mObjects.at(child);
        Accessible* const found = object.role == AccessRole::Label ? &object : FindFirstText(child);
        if (found)
            return found;
    }
    return nullptr;
}

} // namespace WatchPort
