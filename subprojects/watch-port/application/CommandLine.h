#ifndef WATCH_PORT_APPLICATION_COMMAND_LINE_H
#define WATCH_PORT_APPLICATION_COMMAND_LINE_H

#include "app-control/LaunchRequest.h"

#include <string>
#include <vector>

namespace WatchPort
{

/** What the arguments of a program ask for. */
struct CommandLine
{
    bool isHelpWanted = false;
    bool isService = false; /**< The first request comes over the bus. */
    LaunchRequest request;
    std::string error; /**< What is wrong, in one line; empty: nothing, the rest holds. */
};

/** Reads the arguments that follow the program's name. The first mistake ends the reading. */
CommandLine ParseCommandLine(const std::vector<std::string>& arguments);

/** Returns the text that --help prints. */
std::string CommandLineUsage(const std::string& program);

} // namespace WatchPort

#endif
