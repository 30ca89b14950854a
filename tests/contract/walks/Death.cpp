#include "walks/Death.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

// Only a program that is built with a sanitizer has it.
extern "C" __attribute__((weak)) void __sanitizer_set_death_callback(void (*callback)());

namespace Death
{

namespace
{

constexpr unsigned kSecondsInChild = 20;

char sLastWords[200];
volatile std::size_t sLength = 0;

// Nothing is called here that a signal might have interrupted.
void Tell()
{
    const ssize_t written = write(STDERR_FILENO, sLastWords, sLength);
    static_cast<void>(written);
}

void TellAndDie(int number)
{
    Tell();
    std::signal(number, SIG_DFL);
    std::raise(number);
}

std::string ReadAll(int end)
{
    std::string text;
    char buffer[4096];
    for (ssize_t size = 0; (size = read(end, buffer, sizeof buffer)) > 0;)
    {
        text.append(buffer, static_cast<std::size_t>(size));
    }
    return text;
}

[[noreturn]] void Answer(const std::function<std::string()>& ask, int end)
{
    std::signal(SIGALRM, SIG_DFL);
    alarm(kSecondsInChild);
    dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
    const std::string text = ask();
    const bool isWhole = write(end, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    _exit(isWhole ? 0 : 1);
}

} // namespace

void Watch()
{
    if (__sanitizer_set_death_callback)
    {
        __sanitizer_set_death_callback(Tell);
    }
    for (const int number : {SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV, SIGTERM})
    {
        struct sigaction before = {};
        sigaction(number, nullptr, &before);
        // A sanitizer that reports the signal tells as well.
        if (number == SIGTERM || before.sa_handler == SIG_DFL)
        {
            std::signal(number, TellAndDie);
        }
    }
}

void SetLastWords(const std::string& words)
{
    sLength = std::min(words.size(), sizeof sLastWords);
    std::memcpy(sLastWords, words.data(), sLength);
}

std::string AskInChild(const std::function<std::string()>& ask)
{
    int ends[2] = {-1, -1};
    const pid_t child = pipe(ends) == 0 ? fork() : -1;
    if (child < 0)
    {
        return std::string("cannot start a process: ") + std::strerror(errno);
    }
    if (child == 0)
    {
        Answer(ask, ends[1]);
    }
    close(ends[1]);
    const std::string text = ReadAll(ends[0]);
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFSIGNALED(status))
    {
        return "dies of signal " + std::to_string(WTERMSIG(status));
    }
    return status == 0 ? text : "dies with status " + std::to_string(WEXITSTATUS(status));
}

} // namespace Death
