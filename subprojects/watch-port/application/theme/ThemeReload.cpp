#include "application/theme/ThemeReload.h"

#include "application/windows/ThemedObjects.h"

// Only what reads a theme is used of it, and never on an object that is shown.
#define EDJE_EDIT_IS_UNSTABLE_AND_I_KNOW_ABOUT_IT
#include <Edje_Edit.h>
#include <Elementary.h>
#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace WatchPort
{

namespace
{
constexpr char kAny[] = "*";

using PartState = std::pair<std::string, double>;
using PartStates = std::map<std::string, PartState>;

// Parts without a name, which the theme compiler only warns of, are left out.
std::vector<std::string> TakeTexts(Eina_List* list)
{
    std::vector<std::string> texts;
    for (const Eina_List* node = list; node; node = eina_list_next(node))
        if (const auto* text = static_cast<const char*>(eina_list_data_get(node)))
            texts.emplace_back(text);
    edje_edit_string_list_free(list);
    return texts;
}

std::string TakeText(const char* text)
{
    std::string taken = text ? text : "";
    edje_edit_string_free(text);
    return taken;
}

PartState StateOf(Evas_Object* object, const std::string& part)
{
    double value = 0;
    const char* name = edje_object_part_state_get(object, part.c_str(), &value);
    return {name ? name : "", value};
}

bool IsPattern(const std::string& text)
{
    return text.find_first_of("*?[") != std::string::npos;
}

// A group of a theme, to be read.
class Group
{
public:
    Group(Evas* canvas, const std::string& file, const std::string& name)
        : mObject(edje_edit_object_add(canvas)),
          mIsThere(edje_object_file_set(mObject, file.c_str(), name.c_str()))
    {
    }
    ~Group() { evas_object_del(mObject); }
    Group(const Group&) = delete;
    Group& operator=(const Group&) = delete;

    bool IsThere() const { return mIsThere; }
    std::vector<std::string> Parts() const { return TakeTexts(edje_edit_parts_list_get(mObject)); }

    // Emits the signals that lead from states of an object to others.
    void Lead(Evas_Object* object, const PartStates& wanted) const
    {
        for (const std::string& program : TakeTexts(edje_edit_programs_list_get(mObject)))
        {
            if (!IsForeign(program) || !LeadsTo(program, object, wanted))
                continue;
            const std::string source = Source(program);
            edje_object_signal_emit(object, Signal(program).c_str(),
                                    source == kAny ? "" : source.c_str());
            edje_object_message_signal_process(object);
        }
    }

private:
    std::string Signal(const std::string& program) const
    {
        return TakeText(edje_edit_program_signal_get(mObject, program.c_str()));
    }

    std::string Source(const std::string& program) const
    {
        return TakeText(edje_edit_program_source_get(mObject, program.c_str()));
    }

    // Whether the application's code emits the signal: not a part, as for a finger.
    bool IsForeign(const std::string& program) const
    {
        const std::string signal = Signal(program);
        const std::string source = Source(program);
        return !signal.empty() && !IsPattern(signal) && (source == kAny || !IsPattern(source)) &&
               !edje_edit_part_exist(mObject, source.c_str());
    }

    bool LeadsTo(const std::string& program, Evas_Object* object, const PartStates& wanted) const
    {
        if (edje_edit_program_action_get(mObject, program.c_str()) != EDJE_ACTION_TYPE_STATE_SET)
            return false;
        const PartState state{TakeText(edje_edit_program_state_get(mObject, program.c_str())),
                              edje_edit_program_value_get(mObject, program.c_str())};
        const auto parts = TakeTexts(edje_edit_program_targets_get(mObject, program.c_str()));
        return std::any_of(parts.begin(), parts.end(),
                           [&](const std::string& part)
                           {
                               const auto found = wanted.find(part);
                               return found != wanted.end() && found->second == state &&
                                      StateOf(object, part) != state;
                           });
    }

    Evas_Object* const mObject;
    const bool mIsThere;
};

bool IsWithin(const fs::path& file, const fs::path& folder)
{
    const fs::path inner = file.lexically_normal().lexically_relative(folder.lexically_normal());
    return !inner.empty() && *inner.begin() != "..";
}

bool Reload(Evas_Object* object, const fs::path& folder)
{
    const char* file = nullptr;
    const char* name = nullptr;
    edje_object_file_get(object, &file, &name);
    if (!file || !name || !IsWithin(file, folder))
        return false;
    const std::string theme = file;
    const std::string group = name;
    const Group read(evas_object_evas_get(object), theme, group);
    if (!read.IsThere())
        return false;
    PartStates states;
    for (const std::string& part : read.Parts())
        states[part] = StateOf(object, part);
    edje_object_file_set(object, theme.c_str(), group.c_str());
    read.Lead(object, states);
    return true;
}
} // namespace

unsigned ReloadThemes(const Display& display, const fs::path& folder)
{
    unsigned count = 0;
    const std::vector<Evas_Object*> themed = ListThemed(display);
    // Contents may be made anew with what they are in.
    for (Evas_Object* object : themed)
        evas_object_ref(object);
    for (Evas_Object* object : themed)
        count += Reload(object, folder) ? 1 : 0;
    for (Evas_Object* object : themed)
        evas_object_unref(object);
    return count;
}

} // namespace WatchPort
