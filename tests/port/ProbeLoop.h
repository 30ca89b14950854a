#ifndef TESTS_PORT_PROBE_LOOP_H
#define TESTS_PORT_PROBE_LOOP_H

#include "bus/Buses.h"

#include <Ecore.h>
#include <algorithm>
#include <iostream>
#include <map>
#include <sstream>
#include <string>

using namespace WatchPort;

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
    // The port's own connection.
    WatchPort::BusConnection* const bus = busName == "session" ? SessionBus() : SystemBus();
    const auto answered = [](DBusPendingCall* pending, void*)
    {
        const WatchPort::BusMessage answer(dbus_pending_call_steal_reply(pending));
        std::cout << "ping: " << (IsError(answer) ? "failed" : "done") << std::endl;
    };
    bus->FollowLoop();
    static WatchPort::BusPending sPing;
    sPing = bus->Call(WatchPort::NewCall(service, "/", "org.freedesktop.DBus.Peer", "Ping"),
                      std::chrono::seconds(25), answered, nullptr);
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
    ecore_init();
    ecore_main_fd_handler_add(0, ECORE_FD_READ, InputCB, nullptr, nullptr, nullptr);
    ecore_main_loop_begin();
    ecore_shutdown();
    return 0;
}

#endif
