// Starts a program and measures from outside when its first complete frame is on the screen.
//
//   frame-watch settle PICTURE PROGRAM [ARGUMENT...]
//       waits until the screen has not changed for a second and saves it in PICTURE
//   frame-watch measure PICTURE PROGRAM [ARGUMENT...]
//       waits until the screen shows PICTURE and prints "FRAME_MS CPU_MS PEAK_KIB SHARE_KIB
//       PRIVATE_KIB ANONYMOUS_KIB":
//       the wall time and the processor time (of the program and its children that have ended)
//       from just before the start to the first complete frame, its peak resident
//       memory half a second later, its proportional share then (Pss), what it has written that
//       nobody shares (Private_Dirty), and what no file backs
//   frame-watch detents COUNT PROGRAM [ARGUMENT...]
//       turns the wheel over the settled screen, 30 notches a second, and prints the milliseconds
//       to the next change of the screen, for each notch that caused one before the next notch
//   frame-watch energy COUNT INTERVAL_MS PROGRAM [ARGUMENT...]
//       turns the wheel over the settled screen, one notch each INTERVAL_MS, and prints "PROGRAM_MS
//       SERVER_MS FRAMES": the processor time that the program and the X server take for COUNT
//       notches, and how often the screen changes meanwhile
//
// It ends the program with SIGTERM. DISPLAY names a screen on which nothing else draws. All
// toolkits are measured in the same way: the X server reports damage, and each time the screen is
// read and compared. A frame is complete when almost no pixel differs from the settled picture.

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XShm.h>
#include <X11/extensions/XTest.h>
#include <X11/extensions/Xdamage.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/ipc.h>
#include <sys/shm.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace
{
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using Picture = std::vector<unsigned char>;

constexpr milliseconds kDeadline(30000);
constexpr milliseconds kStill(1000);
constexpr milliseconds kAfterFrame(500);
// One in a hundred: a page with a moving arrow is complete, one with a missing line is not.
constexpr size_t kDifferingPixels = 1296;
constexpr int kSameColour = 16;
constexpr size_t kBytesPerPixel = 4;
constexpr std::chrono::microseconds kDetent(1000000 / 30);
constexpr unsigned int kWheelUp = 4;
constexpr unsigned int kWheelDown = 5;

[[noreturn]] void Fail(const std::string& reason)
{
    throw std::runtime_error(reason);
}

/// Processor time of a process so far, with that of its children that have ended, in milliseconds.
double CpuMsOf(pid_t process)
{
    clockid_t clock = 0;
    timespec used = {};
    if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &used) != 0)
        return 0;
    return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
}

class Watched
{
public:
    Watched() : mDisplay(XOpenDisplay(nullptr))
    {
        if (mDisplay == nullptr || !XShmQueryExtension(mDisplay) ||
            !XDamageQueryExtension(mDisplay, &mDamageEvents, &mDamageErrors))
            Fail("no display with shared memory and damage reports");
        const int number = DefaultScreen(mDisplay);
        mImage = XShmCreateImage(mDisplay, DefaultVisual(mDisplay, number),
                                 DefaultDepth(mDisplay, number), ZPixmap, nullptr, &mSegment,
                                 DisplayWidth(mDisplay, number), DisplayHeight(mDisplay, number));
        mSegment.shmid = shmget(IPC_PRIVATE, Size(), IPC_CREAT | 0600);
        mSegment.shmaddr = mImage->data = static_cast<char*>(shmat(mSegment.shmid, nullptr, 0));
        XShmAttach(mDisplay, &mSegment);
        XSync(mDisplay, False);
        shmctl(mSegment.shmid, IPC_RMID, nullptr);
        mDamage = XDamageCreate(mDisplay, Root(), XDamageReportNonEmpty);
        XSync(mDisplay, False);
    }
    ~Watched() { XCloseDisplay(mDisplay); }
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;

    Picture Read()
    {
        XShmGetImage(mDisplay, Root(), mImage, 0, 0, AllPlanes);
        const auto* bytes = reinterpret_cast<const unsigned char*>(mImage->data);
        return {bytes, bytes + Size()};
    }

    /// Waits for a change of the screen; false when none came in time.
    bool WaitForChange(milliseconds patience)
    {
        const auto deadline = Clock::now() + patience;
        while (!TakeDamage())
        {
            const auto left = std::chrono::duration_cast<milliseconds>(deadline - Clock::now());
            pollfd connection = {ConnectionNumber(mDisplay), POLLIN, 0};
            if (left.count() <= 0 || poll(&connection, 1, static_cast<int>(left.count())) == 0)
                return false;
        }
        return true;
    }

    void TurnWheel(unsigned int button)
    {
        XTestFakeButtonEvent(mDisplay, button, True, CurrentTime);
        XTestFakeButtonEvent(mDisplay, button, False, CurrentTime);
        XFlush(mDisplay);
    }

    void PointAtMiddle()
    {
        const int number = DefaultScreen(mDisplay);
        XWarpPointer(mDisplay, None, Root(), 0, 0, 0, 0, DisplayWidth(mDisplay, number) / 2,
                     DisplayHeight(mDisplay, number) / 2);
        XSync(mDisplay, False);
    }

    /// Processor time of the X server so far, in milliseconds.
    double ServerCpuMs() const
    {
        ucred server = {};
        socklen_t size = sizeof server;
        if (getsockopt(ConnectionNumber(mDisplay), SOL_SOCKET, SO_PEERCRED, &server, &size) != 0)
            Fail("the X server is not on this machine");
        return CpuMsOf(server.pid);
    }

private:
    Window Root() const { return DefaultRootWindow(mDisplay); }
    size_t Size() const { return static_cast<size_t>(mImage->bytes_per_line) * mImage->height; }

    bool TakeDamage()
    {
        bool isDamaged = false;
        while (XPending(mDisplay) > 0)
        {
            XEvent event;
            XNextEvent(mDisplay, &event);
            isDamaged = isDamaged || event.type == mDamageEvents + XDamageNotify;
        }
        if (isDamaged)
            XDamageSubtract(mDisplay, mDamage, None, None);
        return isDamaged;
    }

    Display* mDisplay;
    XShmSegmentInfo mSegment{};
    XImage* mImage = nullptr;
    Damage mDamage = 0;
    int mDamageEvents = 0;
    int mDamageErrors = 0;
};

bool IsSamePixel(const unsigned char* left, const unsigned char* right)
{
    return std::abs(left[0] - right[0]) <= kSameColour &&
           std::abs(left[1] - right[1]) <= kSameColour &&
           std::abs(left[2] - right[2]) <= kSameColour;
}

bool IsSame(const Picture& left, const Picture& right)
{
    size_t differing = 0;
    for (size_t i = 0; i < left.size() && differing <= kDifferingPixels; i += kBytesPerPixel)
        differing += !IsSamePixel(&left[i], &right[i]);
    return left.size() == right.size() && differing <= kDifferingPixels;
}

bool IsEmpty(const Picture& picture)
{
    return std::equal(picture.begin() + kBytesPerPixel, picture.end(), picture.begin());
}

class Program
{
public:
    explicit Program(char** command)
    {
        if (posix_spawnp(&mProcess, command[0], nullptr, nullptr, command, environ) != 0)
            Fail(std::string("cannot start \"") + command[0] + '"');
    }
    ~Program()
    {
        kill(mProcess, SIGTERM);
        waitpid(mProcess, nullptr, 0);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    bool HasEnded() const
    {
        siginfo_t state = {};
        waitid(P_PID, static_cast<id_t>(mProcess), &state, WEXITED | WNOHANG | WNOWAIT);
        return state.si_pid == mProcess;
    }

    /// Processor time so far, with that of its children that have ended, in milliseconds.
    double CpuMs() const { return CpuMsOf(mProcess); }

    long StatusKib(const std::string& file, const std::string& name) const
    {
        std::ifstream status("/proc/" + std::to_string(mProcess) + '/' + file);
        for (std::string line; std::getline(status, line);)
        {
            if (line.rfind(name + ':', 0) == 0)
                return std::atol(line.c_str() + name.size() + 1);
        }
        return 0;
    }

private:
    pid_t mProcess = 0;
};

void AwaitEmptyScreen(Watched& screen)
{
    const auto deadline = Clock::now() + kDeadline;
    while (!IsEmpty(screen.Read()))
    {
        if (Clock::now() > deadline)
            Fail("the screen is not empty");
        screen.WaitForChange(milliseconds(100));
    }
    while (screen.WaitForChange(milliseconds(50)))
        continue;
}

void AwaitRest(Watched& screen, const Program& program)
{
    const auto deadline = Clock::now() + kDeadline;
    while (screen.WaitForChange(kStill) || IsEmpty(screen.Read()))
    {
        if (Clock::now() > deadline || program.HasEnded())
            Fail("the screen does not settle, or nothing is drawn");
    }
}

void Settle(Watched& screen, const char* file, char** command)
{
    const Program program(command);
    AwaitRest(screen, program);
    const Picture picture = screen.Read();
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<const char*>(picture.data()),
               static_cast<std::streamsize>(picture.size()));
}

void Measure(Watched& screen, const Picture& wanted, char** command)
{
    const auto start = Clock::now();
    const Program program(command);
    while (!IsSame(screen.Read(), wanted))
    {
        screen.WaitForChange(milliseconds(1000));
        if (Clock::now() - start > kDeadline || program.HasEnded())
            Fail("the settled picture did not appear");
    }
    const std::chrono::duration<double, std::milli> frame = Clock::now() - start;
    const double cpu = program.CpuMs();
    while (screen.WaitForChange(kAfterFrame))
        continue;
    std::printf("%.2f %.2f %ld", frame.count(), cpu, program.StatusKib("status", "VmHWM"));
    for (const char* part : {"Pss", "Private_Dirty", "Anonymous"})
        std::printf(" %ld", program.StatusKib("smaps_rollup", part));
    std::puts("");
}

// Each notch goes back from the one before, so the page stays between its two targets and every
// notch has somewhere to go. With two there and two back, it would rest near every other target.
void TurnDetents(Watched& screen, int count, char** command)
{
    const Program program(command);
    AwaitRest(screen, program);
    screen.PointAtMiddle();
    auto next = Clock::now();
    for (int i = 0; i < count; ++i)
    {
        while (screen.WaitForChange(milliseconds(0)))
            continue;
        const auto turned = Clock::now();
        screen.TurnWheel(i % 2 == 0 ? kWheelDown : kWheelUp);
        next += kDetent;
        if (screen.WaitForChange(std::chrono::duration_cast<milliseconds>(next - turned)))
        {
            const std::chrono::duration<double, std::milli> taken = Clock::now() - turned;
            std::printf("%.2f\n", taken.count());
        }
        std::this_thread::sleep_until(next);
    }
    if (program.HasEnded())
        Fail("the program has ended");
}

// The notches before the first one that counts make what is made once.
void CountEnergy(Watched& screen, int count, milliseconds interval, char** command)
{
    constexpr int kFirst = 2;
    const Program program(command);
    AwaitRest(screen, program);
    screen.PointAtMiddle();
    auto next = Clock::now();
    double own = 0;
    double server = 0;
    int frames = 0;
    for (int i = 0; i < kFirst + count; ++i)
    {
        if (i == kFirst)
        {
            own = program.CpuMs();
            server = screen.ServerCpuMs();
            frames = 0;
        }
        screen.TurnWheel(i % 2 == 0 ? kWheelDown : kWheelUp);
        next += interval;
        while (screen.WaitForChange(std::chrono::duration_cast<milliseconds>(next - Clock::now())))
            ++frames;
        std::this_thread::sleep_until(next);
    }
    own = program.CpuMs() - own;
    server = screen.ServerCpuMs() - server;
    if (program.HasEnded())
        Fail("the program has ended");
    std::printf("%.2f %.2f %d\n", own, server, frames);
}

Picture ReadFile(const char* name)
{
    std::ifstream file(name, std::ios::binary);
    if (!file)
        Fail(std::string("cannot read \"") + name + '"');
    return {std::istreambuf_iterator<char>(file), {}};
}

void Watch(const std::string& mode, char** argv)
{
    Watched screen;
    AwaitEmptyScreen(screen);
    if (mode == "settle")
        Settle(screen, argv[2], argv + 3);
    else if (mode == "detents")
        TurnDetents(screen, std::atoi(argv[2]), argv + 3);
    else if (mode == "energy")
        CountEnergy(screen, std::atoi(argv[2]), milliseconds(std::atoi(argv[3])), argv + 4);
    else
        Measure(screen, ReadFile(argv[2]), argv + 3);
}
} // namespace

int main(int argc, char** argv)
try
{
    const std::string mode = argc < 4 ? "" : argv[1];
    if (mode != "settle" && mode != "measure" && mode != "detents" &&
        !(mode == "energy" && argc > 4))
    {
        std::fputs("frame-watch: settle|measure PICTURE PROGRAM, detents COUNT PROGRAM, or"
                   " energy COUNT INTERVAL_MS PROGRAM\n",
                   stderr);
        return 2;
    }
    Watch(mode, argv);
    return 0;
}
// Catching an exception runs the destructors, which end the watched program.
catch (const std::exception& error)
{
    std::fprintf(stderr, "frame-watch: %s\n", error.what());
    return 1;
}
