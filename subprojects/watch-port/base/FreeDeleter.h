#ifndef WATCH_PORT_BASE_FREE_DELETER_H
#define WATCH_PORT_BASE_FREE_DELETER_H

#include <cstdlib>

namespace WatchPort
{

/**
 * Lets a std::unique_ptr own memory that a C library has allocated with malloc().
 */
struct FreeDeleter
{
    void operator()(void* memory) const { std::free(memory); }
};

} // namespace WatchPort

#endif
