#ifndef TESTS_PORT_DLOG_LOG_CHILD_H
#define TESTS_PORT_DLOG_LOG_CHILD_H

// The level is read once in a process, and a test may break its standard error stream: so each
// line is written by a child process.

#include <dlog.h>

#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

constexpr unsigned kChildSeconds = 20;

struct Outcome
{
    int result = 0; // what the work returned, as an eight-bit number; 1000: a signal ended it
    std::string text;
};

using Work = std::function<int()>;

inline pid_t Start(int stream, const char* level, const Work& work)
{
    const pid_t child = fork();
    if (child != 0)
        return child;
    alarm(kChildSeconds);
    dup2(stream, STDERR_FILENO);
    close(stream);
    if (level == nullptr)
        unsetenv("DLOG_LEVEL");
    else
        setenv("DLOG_LEVEL", level, 1);
    _exit(work() & 0xff);
}

inline int Finish(pid_t child)
{
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? static_cast<signed char>(WEXITSTATUS(status)) : 1000;
}

inline std::string ReadAll(int stream)
{
    std::string text;
    char piece[4096];
    for (ssize_t length = 0; (length = read(stream, piece, sizeof piece)) > 0;)
        text.append(piece, static_cast<size_t>(length));
    return text;
}

inline Outcome RunChild(const Work& work, const char* level = nullptr)
{
    int ends[2];
    EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
    const pid_t child = Start(ends[1], level, work);
    close(ends[1]);
    Outcome outcome;
    outcome.text = ReadAll(ends[0]);
    outcome.result = Finish(child);
    close(ends[0]);
    return outcome;
}

inline int Print(const char* text)
{
    return __dlog_print(LOG_ID_MAIN, DLOG_INFO, "TAG", "%s", text);
}

inline std::vector<std::string> Lines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

#endif
