#include "dlog/LogSink.h"

#include "dlog/Descriptor.h"
#include "dlog/journal/Journal.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace WatchPort
{

namespace
{
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPatience(100);

// Set while the reader sleeps, so that the program waits for it only once.
std::atomic<bool> sReaderSleeps{false};

// Set when the reader fell asleep in the middle of a line: the next one must not continue it.
std::atomic<bool> sLineIsCut{false};

// A second descriptor of the stream that does not block. The flag cannot be set on the stream
// itself, as other programs share it. -1: it could not be opened, such as another user's terminal.
int OpenOwnDescriptor()
{
    return open("/proc/self/fd/2", O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
}

// Keeps SIGPIPE, for a reader that is gone, from ending the program.
class PipeSignalBlock
{
public:
    PipeSignalBlock()
    {
        sigemptyset(&mPipe);
        sigaddset(&mPipe, SIGPIPE);
        sigset_t pending;
        sigpending(&pending);
        mWasPending = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &mPipe, &mBefore);
    }
    ~PipeSignalBlock()
    {
        const timespec now = {};
        if (!mWasPending)
            sigtimedwait(&mPipe, nullptr, &now);
        pthread_sigmask(SIG_SETMASK, &mBefore, nullptr);
    }
    PipeSignalBlock(const PipeSignalBlock&) = delete;
    PipeSignalBlock& operator=(const PipeSignalBlock&) = delete;

private:
    sigset_t mPipe = {};
    sigset_t mBefore = {};
    bool mWasPending = false;
};

// Returns whether the stream accepts more before the deadline.
bool WaitForRoom(int fd, Clock::time_point deadline)
{
    using std::chrono::milliseconds;
    const auto left = std::chrono::duration_cast<milliseconds>(deadline - Clock::now());
    const bool patient = !sReaderSleeps && left.count() > 0;
    pollfd stream = {fd, POLLOUT, 0};
    const int ready = poll(&stream, 1, patient ? static_cast<int>(left.count()) : 0);
    sReaderSleeps = ready == 0;
    return ready > 0 || (ready < 0 && errno == EINTR && patient);
}

// Only a line that is longer than the room left in a pipe needs more than one write.
bool WriteAll(int fd, std::string_view line)
{
    std::optional<Clock::time_point> deadline;
    if (sLineIsCut && write(fd, "\n", 1) != 1)
        return false;
    sLineIsCut = false;
    for (;;)
    {
        const ssize_t written = write(fd, line.data(), line.size());
        if (written == static_cast<ssize_t>(line.size()))
        {
            sLineIsCut = false;
            return true;
        }
        if (written > 0)
        {
            line.remove_prefix(static_cast<size_t>(written));
            sLineIsCut = true;
        }
        else if (errno != EAGAIN && errno != EINTR)
            return false;
        if (!deadline)
            deadline = Clock::now() + kPatience;
        if (!WaitForRoom(fd, *deadline))
            return false;
    }
}
} // namespace

LogSink::LogSink()
{
    // Without times: asking for them would make the kernel update the inode for each line.
    if (statx(STDERR_FILENO, "", AT_EMPTY_PATH, STATX_TYPE | STATX_INO, &mStatus) != 0)
        mStatus.stx_mode = 0;
}

bool LogSink::IsTerminal() const
{
    return S_ISCHR(mStatus.stx_mode) && isatty(STDERR_FILENO) == 1;
}

bool LogSink::IsJournal() const
{
    return mStatus.stx_mode != 0 && IsJournalStream(mStatus);
}

bool LogSink::Write(std::string_view line) const
{
    if (S_ISREG(mStatus.stx_mode))
        return WriteAll(STDERR_FILENO, line);
    if (S_ISSOCK(mStatus.stx_mode))
        return send(STDERR_FILENO, line.data(), line.size(), MSG_DONTWAIT | MSG_NOSIGNAL) ==
               static_cast<ssize_t>(line.size());
    return mStatus.stx_mode != 0 && WriteWithoutWaiting(line);
}

bool LogSink::WriteWithoutWaiting(std::string_view line) const
{
    const PipeSignalBlock block;
    const Descriptor own(OpenOwnDescriptor());
    if (own.Get() >= 0)
        return WriteAll(own.Get(), line);
    return WaitForRoom(STDERR_FILENO, Clock::now()) && WriteAll(STDERR_FILENO, line);
}

} // namespace WatchPort
