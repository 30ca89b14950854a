#ifndef BENCH_PROGRAM_H
#define BENCH_PROGRAM_H

#include <string>
#include <sys/types.h>

/// Processor time of a process so far, with that of its children that have ended, in milliseconds.
double CpuMsOf(pid_t process);

/// A program that runs as long as this object lives, and then ends by SIGTERM.
class Program
{
public:
    /// Throws runtime_error if it cannot be started.
    explicit Program(char** command);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    bool HasEnded() const;
    double CpuMs() const { return CpuMsOf(mProcess); }
    /// The figure of a name in one of the kernel's files about the process, in KiB.
    long StatusKib(const std::string& file, const std::string& name) const;

private:
    pid_t mProcess = 0;
};

#endif
