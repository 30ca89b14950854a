#ifndef WATCH_PORT_BASE_TERMINATION_H
#define WATCH_PORT_BASE_TERMINATION_H

#include <algorithm>
#include <csignal>
#include <iterator>

namespace WatchPort
{

/**
 * Blocks the signals that end the application, unless it ignores them, so that a wait can poll for
 * them and give up. They are delivered when this object is destroyed, each once, to the usual
 * handlers.
 *
 * The toolkit handles these signals in its main loop, which a wait outside of it never reaches, and
 * the libraries' blocking calls do not end by a signal.
 */
class Termination
{
public:
    /** The interval at which a wait should poll. */
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

    /** Whether one of the signals has come. */
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

    // nohup ignores SIGHUP, for instance. Blocked, an ignored signal would stay pending like any
    // other.
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
