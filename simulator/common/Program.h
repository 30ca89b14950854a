#ifndef SIMULATOR_COMMON_PROGRAM_H
#define SIMULATOR_COMMON_PROGRAM_H

#include "common/Complaint.h"
#include "common/Options.h"

#include <Efreet.h>
#include <Elementary.h>
#include <cstdlib>
#include <set>
#include <stdexcept>
#include <string>

constexpr int kWrongUse = 2;

/**
 * Runs a program of the watch: reads its options, starts the toolkit, calls `run` with the options,
 * shuts the toolkit down, and returns the exit status, which is that of `run`.
 *
 * Wrong arguments end it with status 2, any other std::exception with 1, and one line either way.
 */
template <typename Run>
int RunProgram(int argumentCount, char** arguments, const std::set<std::string>& names, Run run)
{
    int status = EXIT_FAILURE;
    // The watch's bus takes the place of the system bus; the toolkit's listeners must not use it.
    ecore_app_no_system_modules();
    try
    {
        const Options options(argumentCount, arguments, names);
        // No menus are shown here, and their daemon would outlive the watch.
        efreet_cache_disable();
        elm_init(1, arguments);
        status = run(options);
        elm_shutdown();
    }
    catch (const std::invalid_argument& error)
    {
        Complain(error.what());
        status = kWrongUse;
    }
    catch (const std::exception& error)
    {
        Complain(error.what());
    }
    return status;
}

#endif
