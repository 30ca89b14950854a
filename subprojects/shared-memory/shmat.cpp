#include <dlfcn.h>
#include <sys/shm.h>

// Stands before the C library's function (see RTLD_NEXT in dlsym(3)). The toolkit takes the memory
// that it shares with an X server off the system's list when its window goes, and the picture of
// an application that is killed would stay for good; the list has 4096 places. So it comes off at
// once: Linux lets the server attach all the same as long as the application is (see shmat(2)).
extern "C" void* AttachUnlisted(int id, const void* address, int flags) noexcept __asm__("shmat");

void* AttachUnlisted(int id, const void* address, int flags) noexcept
{
    static const auto next = reinterpret_cast<decltype(&shmat)>(dlsym(RTLD_NEXT, "shmat"));
    void* const memory = next(id, address, flags);
    if (memory != reinterpret_cast<void*>(-1))
        shmctl(id, IPC_RMID, nullptr);
    return memory;
}
