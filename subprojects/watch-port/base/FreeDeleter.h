#ifndef WATCH_PORT_BASE_FREE_DELETER_H
#define WATCH_PORT_BASE_FREE_DELETER_H

#include <cstdlib>

namespace WatchPort
{

/**
 * Has a std::unique_ptr own what a C library has allocated with malloc() and left to the caller.
 */
struct FreeDeleter
{
    void operator()(void* memory) const { std::free(memory); }
};

} // namespace WatchPort

#endif
