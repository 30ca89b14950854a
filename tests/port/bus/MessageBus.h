#ifndef TESTS_PORT_BUS_MESSAGE_BUS_H
#define TESTS_PORT_BUS_MESSAGE_BUS_H

#include "bus/BusConnection.h"

#include <csignal>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

/** A private message bus, which ends with the object or with the test. */
class MessageBus
{
public:
    MessageBus()
    {
        int ends[2];
        if (pipe(ends) != 0 || (mProcess = fork()) < 0)
            return;
        if (mProcess == 0)
            Run(ends[1]);
        close(ends[1]);
        for (char c = 0; read(ends[0], &c, 1) == 1 && c != '\n';)
            mAddress += c;
        close(ends[0]);
    }
    ~MessageBus()
    {
        kill(mProcess, SIGKILL);
        waitpid(mProcess, nullptr, 0);
    }
    MessageBus(const MessageBus&) = delete;
    MessageBus& operator=(const MessageBus&) = delete;

    const std::string& Address() const { return mAddress; }

    std::unique_ptr<WatchPort::BusConnection> Connect() const
    {
        return WatchPort::BusConnection::Open(mAddress, WatchPort::BusConnection::Clock::now() +
                                                            std::chrono::minutes(1));
    }

    /** From now on the bus reads nothing and answers nobody. */
    void Hold() const
    {
        kill(mProcess, SIGSTOP);
        waitid(P_PID, static_cast<id_t>(mProcess), nullptr, WSTOPPED);
    }
    void Release() const { kill(mProcess, SIGCONT); }

private:
    [[noreturn]] static void Run(int output)
    {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        dup2(output, STDOUT_FILENO);
        execlp("dbus-daemon", "dbus-daemon", "--session", "--nofork", "--nopidfile",
               "--print-address", nullptr);
        _exit(127);
    }

    pid_t mProcess = -1;
    std::string mAddress;
};

#endif
