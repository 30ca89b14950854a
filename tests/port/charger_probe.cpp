// Drives the charger's state from standard input and prints what comes of it, line by line:
//
//   get [null] (an answer left untouched reads 1) | add NAME [ACTION] | remove NAME | wrong | quit
//
// NAME is "a" or "b"; ACTION is what the callback does each time it is called, after it has
// printed "changed NAME VALUE": another command, with "+" for a space.

#include "device/battery.h"
#include "device/callback.h"

#include <Ecore.h>
#include <algorithm>
#include <cstdint>
#include <iostream>
#include <map>
#include <sstream>
#include <string>

namespace
{
std::map<std::string, std::string> sActions;
bool sIsAdding = false;

void Obey(const std::string& line);

void OnChanged(const char* name, void* value, void* userData)
{
    std::cout << "changed " << name << ' ' << reinterpret_cast<intptr_t>(value)
              << (userData == &sActions ? "" : " without its data")
              << (sIsAdding ? " while it is added" : "") << std::endl;
    Obey(sActions[name]);
}

void ChangedACB(device_callback_e, void* value, void* userData)
{
    OnChanged("a", value, userData);
}

void ChangedBCB(device_callback_e, void* value, void* userData)
{
    OnChanged("b", value, userData);
}

device_changed_cb ToCallback(const std::string& name)
{
    return name == "a" ? ChangedACB : name == "b" ? ChangedBCB : nullptr;
}

void Get(const std::string& name)
{
    bool charging = true;
    const int result = device_battery_is_charging(name == "null" ? nullptr : &charging);
    std::cout << "get: " << result << ' ' << charging << std::endl;
}

void Add(const std::string& name, std::string action)
{
    std::replace(action.begin(), action.end(), '+', ' ');
    sActions[name] = action;
    sIsAdding = true;
    const int result =
        device_add_callback(DEVICE_CALLBACK_BATTERY_CHARGING, ToCallback(name), &sActions);
    sIsAdding = false;
    std::cout << "add " << name << ": " << result << std::endl;
}

void UseWrongType()
{
    constexpr auto kWrong = static_cast<device_callback_e>(1);
    std::cout << "wrong: " << device_add_callback(kWrong, ChangedACB, nullptr) << ' '
              << device_remove_callback(kWrong, ChangedACB) << std::endl;
}

void Obey(const std::string& line)
{
    std::istringstream words(line);
    std::string verb;
    std::string name;
    std::string action;
    words >> verb >> name >> action;
    if (verb == "get")
        Get(name);
    else if (verb == "add")
        Add(name, action);
    else if (verb == "remove")
        std::cout << "remove " << name << ": "
                  << device_remove_callback(DEVICE_CALLBACK_BATTERY_CHARGING, ToCallback(name))
                  << std::endl;
    else if (verb == "wrong")
        UseWrongType();
    else if (verb == "quit")
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
    ecore_app_no_system_modules();
    ecore_init();
    ecore_main_fd_handler_add(0, ECORE_FD_READ, InputCB, nullptr, nullptr, nullptr);
    ecore_main_loop_begin();
    ecore_shutdown();
    return 0;
}
