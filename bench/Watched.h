#ifndef BENCH_WATCHED_H
#define BENCH_WATCHED_H

#include <X11/Xlib.h>
#include <X11/extensions/XShm.h>
#include <X11/extensions/Xdamage.h>

#include <chrono>
#include <cstddef>
#include <vector>

/// The pixels of a screen, four bytes each.
using Picture = std::vector<unsigned char>;

/// The screen that DISPLAY names, seen from outside.
class Watched
{
public:
    /// Throws runtime_error if it shares no memory or reports no damage.
    Watched();
    ~Watched() { XCloseDisplay(mDisplay); }
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;

    Picture Read();
    /// Waits for a change of the screen; false when none came in time.
    bool WaitForChange(std::chrono::milliseconds patience);
    /// Turns the wheel by one notch; the button says which way.
    void TurnWheel(unsigned int button);
    void PointAtMiddle();
    /// Processor time of the X server so far, in milliseconds.
    double ServerCpuMs() const;

private:
    Window Root() const { return DefaultRootWindow(mDisplay); }
    size_t Size() const { return static_cast<size_t>(mImage->bytes_per_line) * mImage->height; }
    bool TakeDamage();

    Display* mDisplay;
    XShmSegmentInfo mSegment{};
    XImage* mImage = nullptr;
    Damage mDamage = 0;
    int mDamageEvents = 0;
    int mDamageErrors = 0;
};

#endif
