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

#include "Program.h"
#include "Watched.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace
{
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

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
