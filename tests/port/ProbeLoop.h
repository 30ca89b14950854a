#ifndef TESTS_PORT_PROBE_LOOP_H
#define TESTS_PORT_PROBE_LOOP_H

#include <Ecore.h>
#include <Eldbus.h>
#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <map>
#include <sstream>
#include <string>

/** What a probe does for a line "VERB FIRST SECOND"; each prints one line "VERB …: result". */
using Command = void (*)(const std::string& first, const std::string& second);
using Commands = std::map<std::string, Command>;

inline Commands sCommands;

/** Obeys "COMMAND[;COMMAND…]". */
inline void Obey(const std::string& line)
{
    std::istringstream commands(line);
    for (std::string command; std::getline(commands, command, ';');)
    {
        std::istringstream words(command);
        std::string verb;
        std::string first;
        std::string second;
        words >> verb >> first >> second;
        sCommands.at(verb)(first, second);
    }
}

/** Turns the word "get+language,unset+language" into "get language;unset language". */
inline std::string ToCommands(std::string word)
{
    std::replace(word.begin(), word.end(), '+', ' ');
    std::replace(word.begin(), word.end(), ',', ';');
    return word;
}

/**
 * Prints "ping: done" when a service on the bus "system" or "session" has answered. Messages keep
 * their order, so that all the service sent before has been dealt with then.
 */
inline void Ping(const std::string& service, const std::string& busName)
{
    // By address, as the port does, to share its connection.
    const char* address =
        std::getenv(busName == "session" ? "DBUS_SESSION_BUS_ADDRESS" : "DBUS_SYSTEM_BUS_ADDRESS");
    Eldbus_Connection* bus = eldbus_address_connection_get(address);
    Eldbus_Message* ping =
        eldbus_message_method_call_new(service.c_str(), "/", "org.freedesktop.DBus.Peer", "Ping");
    const auto answered = [](void*, const Eldbus_Message* reply, Eldbus_Pending*)
    {
        const bool isError = eldbus_message_error_get(reply, nullptr, nullptr);
        std::cout << "ping: " << (isError ? "failed" : "done") << std::endl;
    };
    eldbus_connection_send(bus, ping, answered, nullptr, -1);
    eldbus_connection_unref(bus);
}

inline Eina_Bool InputCB(void*, Ecore_Fd_Handler*)
{
    std::string line;
    if (std::getline(std::cin, line))
        Obey(line);
    else
        ecore_main_loop_quit();
    return ECORE_CALLBACK_RENEW;
}

/** Obeys the lines of standard input, and "ping SERVICE BUS", until it ends. */
inline int RunProbe(const Commands& commands)
{
    sCommands = commands;
    sCommands["ping"] = Ping;
    ecore_app_no_system_modules();
    eldbus_init();
    ecore_main_fd_handler_add(0, ECORE_FD_READ, InputCB, nullptr, nullptr, nullptr);
    ecore_main_loop_begin();
    eldbus_shutdown();
    return 0;
}

#endif
