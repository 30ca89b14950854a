// Drives the charger's state from standard input and prints what comes of it, line by line:
//
//   get [null] | add NAME [ACTION] | remove NAME | wrong TYPE
//
// An answer that "get" finds untouched reads 1. NAME is "a" or "b"; ACTION is what the callback
// does each time it is called, after it has printed "changed NAME VALUE": other commands, with "+"
// for a space and "," between them.

#include "port/ProbeLoop.h"
#include <device/battery.h>
#include <device/callback.h>

#include <cstdint>

namespace
{
std::map<std::string, std::string> sActions;
bool sIsAdding = false;

void OnChanged(const char* name, void* value, void* userData)
{
    std::cout << "changed " << name << ' ' << reinterpret_cast<intptr_t>(value)
              << (userData == &sActions ? "" : " without its data")
              << (sIsAdding ? " while it is added" : "") << std::endl;
    Obey(std::string(sActions[name]));
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
    if (name == "a")
        return ChangedACB;
    return name == "b" ? ChangedBCB : nullptr;
}

void Get(const std::string& destination, const std::string&)
{
    bool charging = true;
    const int result = device_battery_is_charging(destination == "null" ? nullptr : &charging);
    std::cout << "get: " << result << ' ' << charging << std::endl;
}

void Add(const std::string& name, const std::string& action)
{
    sActions.emplace(name, ToCommands(action));
    sIsAdding = true;
    const int result =
        device_add_callback(DEVICE_CALLBACK_BATTERY_CHARGING, ToCallback(name), &sActions);
    sIsAdding = false;
    std::cout << "add: " << result << std::endl;
}

void Remove(const std::string& name, const std::string&)
{
    std::cout << "remove: "
              << device_remove_callback(DEVICE_CALLBACK_BATTERY_CHARGING, ToCallback(name))
              << std::endl;
}

// As a caller in C may pass any number.
__attribute__((no_sanitize("enum"))) void UseWrongType(const std::string& type, const std::string&)
{
    const auto wrong = static_cast<device_callback_e>(std::stoi(type));
    std::cout << "wrong: " << device_add_callback(wrong, ChangedACB, nullptr) << ' '
              << device_remove_callback(wrong, ChangedACB) << std::endl;
}
} // namespace

int main()
{
    return RunProbe({{"get", Get}, {"add", Add}, {"remove", Remove}, {"wrong", UseWrongType}});
}
