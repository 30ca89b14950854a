#ifndef TESTS_PORT_APP_TALK_H
#define TESTS_PORT_APP_TALK_H

// How an application under test talks with the test: by lines on its standard streams.

#include <app_control.h>
#include <functional>
#include <string>

/** Prints a line at once. */
void Say(const std::string& line);

/** Calls `obey` from the main loop with each line that comes in, to the end of the process. */
void ObeyInput(std::function<void(const std::string& line)> obey);

/** A request as one line: "operation KEY=VALUE…", of a value longer than 100 bytes the length. */
std::string Describe(app_control_h request);

#endif
