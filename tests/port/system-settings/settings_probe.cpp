// Drives the system settings from standard input and prints what comes of it, line by line:
//
//   get KEY [null] | is KEY [null] | set KEY [ACTION] | unset KEY | bind DIRECTORY
//   translate ID | catalogues
//
// An answer that "is" finds untouched reads 1. KEY is a name below or a number; ACTION is what the
// callback does each time it is called, after it has printed "changed KEY": other commands, with
// "+" for a space and "," between them.

#include "port/ProbeLoop.h"
#include "system_settings.h"
#include "texts/TextLocale.h"

#include <algorithm>
#include <cstdlib>
#include <libintl.h>

namespace
{
const std::map<std::string, int> kKeys = {{"region", SYSTEM_SETTINGS_KEY_LOCALE_COUNTRY},
                                          {"language", SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE},
                                          {"format", SYSTEM_SETTINGS_KEY_LOCALE_TIMEFORMAT_24HOUR},
                                          {"time", SYSTEM_SETTINGS_KEY_TIME_CHANGED}};

std::map<int, std::string> sActions;

// A number of no key too, as a caller in C may pass any.
__attribute__((no_sanitize("enum"))) system_settings_key_e ToKey(const std::string& text)
{
    const auto key = kKeys.find(text);
    return static_cast<system_settings_key_e>(key == kKeys.end() ? std::atoi(text.c_str())
                                                                 : key->second);
}

void ChangedCB(system_settings_key_e key, void* userData)
{
    const auto name = std::find_if(kKeys.begin(), kKeys.end(),
                                   [=](const auto& known) { return known.second == key; });
    std::cout << "changed " << name->first << (userData == &sActions ? "" : " without its data")
              << std::endl;
    Obey(std::string(sActions[key]));
}

void Get(const std::string& name, const std::string& destination)
{
    char* value = nullptr;
    const int result =
        system_settings_get_value_string(ToKey(name), destination == "null" ? nullptr : &value);
    std::cout << "get: " << result << ' ' << (value ? value : "-") << std::endl;
    std::free(value);
}

void Is(const std::string& name, const std::string& destination)
{
    bool value = true;
    const int result =
        system_settings_get_value_bool(ToKey(name), destination == "null" ? nullptr : &value);
    std::cout << "is: " << result << ' ' << value << std::endl;
}

void Set(const std::string& name, const std::string& action)
{
    system_settings_changed_cb callback = action == "null" ? nullptr : ChangedCB;
    sActions[ToKey(name)] = callback ? ToCommands(action) : "";
    std::cout << "set: " << system_settings_set_changed_cb(ToKey(name), callback, &sActions)
              << std::endl;
}

void Unset(const std::string& name, const std::string&)
{
    std::cout << "unset: " << system_settings_unset_changed_cb(ToKey(name)) << std::endl;
}

void Bind(const std::string& directory, const std::string&)
{
    std::cout << "bind: " << bindtextdomain("probe", directory.c_str()) << std::endl;
}

void Translate(const std::string& id, const std::string&)
{
    std::cout << "translate: " << dgettext("probe", id.c_str()) << std::endl;
}

void ShowCatalogues(const std::string&, const std::string&)
{
    const char* list = std::getenv("LANGUAGE");
    std::cout << "catalogues: " << (list ? list : "-") << std::endl;
}
} // namespace

int main()
{
    SetTextLocale();
    return RunProbe({{"get", Get},
                     {"is", Is},
                     {"set", Set},
                     {"unset", Unset},
                     {"bind", Bind},
                     {"translate", Translate},
                     {"catalogues", ShowCatalogues}});
}
