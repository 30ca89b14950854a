#ifndef WATCH_PORT_BASE_TERMINATION_H
#define WATCH_PORT_BASE_TERMINATION_H

#include <algorithm>
#include <csignal>
#include <iterator>

namespace WatchPort
{

/**
 * Holds back the signals that end the application, unless it ignores them, while it lives, so that
 * a wait can look for them and give up. They are delivered when it goes: whoever handles them then
 * is told once and in full.
 *
 * The toolkit handles them in its main loop, which nothing that waits outside of it would ever
 * reach; blocking calls of the libraries do not end by a signal either.
 */
class Termination
{
public:
    /** As often as this a wait should look. */
    static constexpr int kLookMilliseconds = 50;

    Termination()
    {
        sigemptyset(&mSignals);
        for (const int signal : kEnding)
        {
            if (!IsIgnored(signal))
                sigaddset(&mSignals, signal);
        }
        pthread_sigmask(SIG_BLOCK, &mSignals, &mBefore);
    }
    ~Termination() { pthread_sigmask(SIG_SETMASK, &mBefore, nullptr); }
    Termination(const Termination&) = delete;
    Termination& operator=(const Termination&) = delete;

    /** Tells whether one of the signals has come. */
    bool HasCome() const
    {
        sigset_t pending = {};
        sigpending(&pending);
        return std::any_of(std::begin(kEnding), std::end(kEnding),
                           [&](int signal) {
                               return sigismember(&mSignals, signal) == 1 &&
                                      sigismember(&pending, signal) == 1;
                           });
    }

private:
    static constexpr int kEnding[] = {SIGTERM, SIGINT, SIGHUP};

    // As nohup leaves SIGHUP; held back, it would wait like any other.
    static bool IsIgnored(int signal)
    {
        struct sigaction action = {};
        return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
    }

    sigset_t mSignals = {};
    sigset_t mBefore = {};
};

} // namespace WatchPort

#endif
