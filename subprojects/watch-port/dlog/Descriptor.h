#ifndef WATCH_PORT_DLOG_DESCRIPTOR_H
#define WATCH_PORT_DLOG_DESCRIPTOR_H

#include <unistd.h>

namespace WatchPort
{

/** A file descriptor that is closed with the object; a negative one is none. */
class Descriptor
{
public:
    explicit Descriptor(int fd) : mFd(fd) {}
    ~Descriptor()
    {
        if (mFd >= 0)
            close(mFd);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Get() const { return mFd; }

private:
    int mFd;
};

} // namespace WatchPort

#endif
