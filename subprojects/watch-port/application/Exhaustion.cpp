#include "application/Exhaustion.h"

#include "dlog/PortLog.h"
#include <app.h>

#include <new>
#include <sys/mman.h>
#include <unistd.h>

namespace WatchPort
{

namespace
{
// Enough for the callbacks that are still to come, which allocate little.
constexpr size_t kReserve = size_t{1} << 20;

void SEndProcess()
{
    static std::atomic_flag sIsEnding = ATOMIC_FLAG_INIT;
    while (sIsEnding.test_and_set())
        pause();
    PORT_LOG_ERROR("the memory is exhausted and the way out needs more: the process ends at once");
    _exit(APP_ERROR_OUT_OF_MEMORY & 0xff);
}
} // namespace

MemoryReserve::MemoryReserve()
    : mPages(mmap(nullptr, kReserve, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))
{
}

void MemoryReserve::Spend()
{
    void* pages = mPages.exchange(MAP_FAILED);
    if (pages != MAP_FAILED)
        munmap(pages, kReserve);
}

void EndWhenExhausted()
{
    if (std::get_new_handler())
        std::set_new_handler(SEndProcess);
}

} // namespace WatchPort
