// Drives the system settings from standard input and prints what comes of it, line by line:
//
//   get KEY | set KEY [ACTION] | unset KEY | translate ID | bind DIRECTORY | setlocale NAME | quit
//
// KEY is a name below or a number; ACTION is what the callback does each time it is called, after
// it has printed "changed KEY": another command, with "+" for a space.

#include "system_settings.h"

#include <Ecore.h>
#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <iostream>
#include <libintl.h>
#include <map>
#include <sstream>
#include <string>

namespace
{
const std::map<std::string, int> kKeys = {{"region", SYSTEM_SETTINGS_KEY_LOCALE_COUNTRY},
                                          {"language", SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE},
                                          {"format", SYSTEM_SETTINGS_KEY_LOCALE_TIMEFORMAT_24HOUR},
                                          {"time", SYSTEM_SETTINGS_KEY_TIME_CHANGED}};

std::map<int, std::string> sActions;

void Obey(const std::string& line);

system_settings_key_e ToKey(const std::string& text)
{
    const auto key = kKeys.find(text);
    return static_cast<system_settings_key_e>(key == kKeys.end() ? std::atoi(text.c_str())
                                                                 : key->second);
}

void ChangedCB(system_settings_key_e key, void* userData)
{
    for (const auto& [name, value] : kKeys)
    {
        if (value == key)
            std::cout << "changed " << name << (userData == &sActions ? "" : " without its data")
                      << std::endl;
    }
    std::istringstream actions(sActions[key]);
    for (std::string action; std::getline(actions, action, ';');)
        Obey(action);
}

void Get(const std::string& name)
{
    char* value = nullptr;
    const int result = name == "null" ? system_settings_get_value_string(ToKey("language"), nullptr)
                                      : system_settings_get_value_string(ToKey(name), &value);
    std::cout << "get " << name << ": " << result << ' ' << (value ? value : "-") << std::endl;
    std::free(value);
}

void Set(const std::string& name, std::string action)
{
    std::replace(action.begin(), action.end(), '+', ' ');
    sActions[ToKey(name)] = action;
    const int result = system_settings_set_changed_cb(
        ToKey(name), action == "null" ? nullptr : ChangedCB, &sActions);
    std::cout << "set " << name << ": " << result << std::endl;
}

void Obey(const std::string& line)
{
    std::istringstream words(line);
    std::string verb;
    std::string first;
    std::string second;
    words >> verb >> first >> second;
    if (verb == "get")
        Get(first);
    else if (verb == "set")
        Set(first, second);
    else if (verb == "unset")
        std::cout << "unset " << first << ": " << system_settings_unset_changed_cb(ToKey(first))
                  << std::endl;
    else if (verb == "translate")
        std::cout << "translate: " << dgettext("probe", first.c_str()) << std::endl;
    else if (verb == "bind")
        std::cout << "bind: " << bindtextdomain("probe", first.c_str()) << std::endl;
    else if (verb == "setlocale")
        std::cout << "setlocale: " << (std::setlocale(LC_ALL, first.c_str()) ? "done" : "failed")
                  << std::endl;
    else if (verb == "environment")
        std::cout << "environment: " << (std::getenv("LANGUAGE") ? std::getenv("LANGUAGE") : "-")
                  << std::endl;
    else
        ecore_main_loop_quit();
}

Eina_Bool InputCB(void*, Ecore_Fd_Handler*)
{
    std::string line;
    if (std::getline(std::cin, line))
        Obey(line);
    else
        ecore_main_loop_quit();
    return ECORE_CALLBACK_RENEW;
}
} // namespace

int main()
{
    std::setlocale(LC_ALL, "");
    ecore_app_no_system_modules();
    ecore_init();
    ecore_main_fd_handler_add(0, ECORE_FD_READ, InputCB, nullptr, nullptr, nullptr);
    ecore_main_loop_begin();
    ecore_shutdown();
    return 0;
}
