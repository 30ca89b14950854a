#ifndef WATCH_PORT_APPLICATION_EXHAUSTION_H
#define WATCH_PORT_APPLICATION_EXHAUSTION_H

#include <atomic>

namespace WatchPort
{

/**
 * Pages that are kept for the way out of a process whose memory is exhausted. They are never
 * written to, so that they take room among the addresses alone.
 */
class MemoryReserve
{
public:
    MemoryReserve();
    ~MemoryReserve() { Spend(); }
    MemoryReserve(const MemoryReserve&) = delete;
    MemoryReserve& operator=(const MemoryReserve&) = delete;

    /** Gives the pages back, for others to use. May be called again, and by any thread. */
    void Spend();

private:
    std::atomic<void*> mPages;
};

/**
 * From now on exhausted memory ends the process, with one line and APP_ERROR_OUT_OF_MEMORY as its
 * status, where it called the application's new-handler so far. To be called when the application
 * has asked for its exit: operator new calls a new-handler until there is memory, so that one which
 * asks again and again would never return to the main loop.
 *
 * An application without a new-handler keeps its exceptions.
 */
void EndWhenExhausted();

} // namespace WatchPort

#endif
