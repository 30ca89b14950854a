#include "Watched.h"

#include "Program.h"

#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

#include <poll.h>
#include <stdexcept>
#include <sys/ipc.h>
#include <sys/shm.h>
#include <sys/socket.h>

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

Watched::Watched() : mDisplay(XOpenDisplay(nullptr))
{
    if (mDisplay == nullptr || !XShmQueryExtension(mDisplay) ||
        !XDamageQueryExtension(mDisplay, &mDamageEvents, &mDamageErrors))
        throw std::runtime_error("no display with shared memory and damage reports");
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

Picture Watched::Read()
{
    XShmGetImage(mDisplay, Root(), mImage, 0, 0, AllPlanes);
    const auto* bytes = reinterpret_cast<const unsigned char*>(mImage->data);
    return {bytes, bytes + Size()};
}

bool Watched::WaitForChange(milliseconds patience)
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

void Watched::TurnWheel(unsigned int button)
{
    XTestFakeButtonEvent(mDisplay, button, True, CurrentTime);
    XTestFakeButtonEvent(mDisplay, button, False, CurrentTime);
    XFlush(mDisplay);
}

void Watched::PointAtMiddle()
{
    const int number = DefaultScreen(mDisplay);
    XWarpPointer(mDisplay, None, Root(), 0, 0, 0, 0, DisplayWidth(mDisplay, number) / 2,
                 DisplayHeight(mDisplay, number) / 2);
    XSync(mDisplay, False);
}

double Watched::ServerCpuMs() const
{
    ucred server = {};
    socklen_t size = sizeof server;
    if (getsockopt(ConnectionNumber(mDisplay), SOL_SOCKET, SO_PEERCRED, &server, &size) != 0)
        throw std::runtime_error("the X server is not on this machine");
    return CpuMsOf(server.pid);
}

bool Watched::TakeDamage()
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
