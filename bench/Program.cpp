#include "Program.h"

#include <csignal>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

double CpuMsOf(pid_t process)
{
    clockid_t clock = 0;
    timespec used = {};
    if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &used) != 0)
        return 0;
    return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
}

Program::Program(char** command)
{
    if (posix_spawnp(&mProcess, command[0], nullptr, nullptr, command, environ) != 0)
        throw std::runtime_error(std::string("cannot start \"") + command[0] + '"');
}

Program::~Program()
{
    kill(mProcess, SIGTERM);
    waitpid(mProcess, nullptr, 0);
}

bool Program::HasEnded() const
{
    siginfo_t state = {};
    waitid(P_PID, static_cast<id_t>(mProcess), &state, WEXITED | WNOHANG | WNOWAIT);
    return state.si_pid == mProcess;
}

long Program::StatusKib(const std::string& file, const std::string& name) const
{
    std::ifstream status("/proc/" + std::to_string(mProcess) + '/' + file);
    for (std::string line; std::getline(status, line);)
    {
        if (line.rfind(name + ':', 0) == 0)
            return std::atol(line.c_str() + name.size() + 1);
    }
    return 0;
}
