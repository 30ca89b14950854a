#include <array>
#include <cerrno>
#include <cstring>
#include <dlfcn.h>
#include <mutex>
#include <sys/shm.h>
#include <unistd.h>

// What stands here before the C library's functions (see RTLD_NEXT in dlsym(3)) is for the pictures
// that the toolkit shares with an X server.
//
// It takes them off the system's list when its window goes, and those of an application that is
// killed would stay for good; the list has 4096 places. So they come off at once: Linux lets the
// server attach all the same as long as the application is (see shmat(2)).
//
// And it makes a new picture for each frame (1.26 keeps none, as the limit of what it may keep
// comes out as 0), of which the kernel clears and maps each page: a third of what a frame costs. So
// what it gives back is kept for the next frames. All goes with the last picture in use, half a
// second after a motion.
extern "C" {
int GetSegment(key_t key, size_t size, int flags) noexcept __asm__("shmget");
void* AttachSegment(int id, const void* address, int flags) noexcept __asm__("shmat");
int DetachSegment(const void* memory) noexcept __asm__("shmdt");
}

namespace
{

// The pictures of a motion differ by some lines. So each has room for the others; pages that nobody
// touches take no memory.
constexpr size_t kRoom = 1 << 20;

// Of the flags of shmget and of a segment's mode.
constexpr unsigned kPermissions = 0777;

enum class Use
{
    None,
    Promised, // by shmget, until it is attached
    Attached,
};

struct Segment
{
    int id;
    size_t size;
    unsigned permissions;
    void* memory; // null: a free place
    Use use;
};

// Those beyond are attached and detached as ever.
std::array<Segment, 16> gSegments{};
std::mutex gMutex;

template <typename Function> Function* Next(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

int Detach(const void* memory)
{
    static auto* const next = Next<decltype(shmdt)>("shmdt");
    return next(memory);
}

template <typename Condition> Segment* Find(Condition condition)
{
    for (Segment& segment : gSegments)
    {
        if (condition(segment))
            return &segment;
    }
    return nullptr;
}

template <typename Condition> void Drop(Condition condition)
{
    for (Segment& segment : gSegments)
    {
        if (!segment.memory || segment.use != Use::None || !condition(segment))
            continue;
        Detach(segment.memory);
        segment.memory = nullptr;
    }
}

// A server that is late, a child of the process, or whoever else has the memory may still read it.
bool IsOursAlone(int id)
{
    shmid_ds about{};
    return shmctl(id, IPC_STAT, &about) == 0 && about.shm_nattch == 1;
}

Segment* FindUnused(size_t size, int flags)
{
    return Find(
        [size, flags](const Segment& segment)
        {
            return segment.memory && segment.use == Use::None && segment.size >= size &&
                   segment.permissions == (static_cast<unsigned>(flags) & kPermissions) &&
                   IsOursAlone(segment.id);
        });
}

// What has a name, or was made by another process, is what an application shares for itself.
bool IsOwn(const shmid_ds& about)
{
    return about.shm_perm.__key == IPC_PRIVATE && about.shm_cpid == getpid();
}

void Keep(int id, const shmid_ds& about, void* memory)
{
    Segment* const place = Find([](const Segment& segment) { return !segment.memory; });
    const unsigned permissions = about.shm_perm.mode & kPermissions;
    if (place)
        *place = {id, about.shm_segsz, permissions, memory, Use::Attached};
}

} // namespace

int GetSegment(key_t key, size_t size, int flags) noexcept
{
    static auto* const next = Next<decltype(shmget)>("shmget");
    if (key != IPC_PRIVATE)
        return next(key, size, flags);
    const std::lock_guard lock(gMutex);
    Segment* const unused = FindUnused(size, flags);
    if (!unused)
    {
        Drop([size](const Segment& segment) { return segment.size < size; });
        return next(key, (size + kRoom - 1) / kRoom * kRoom, flags);
    }
    unused->use = Use::Promised;
    std::memset(unused->memory, 0, size);
    return unused->id;
}

void* AttachSegment(int id, const void* address, int flags) noexcept
{
    static auto* const next = Next<decltype(shmat)>("shmat");
    const std::lock_guard lock(gMutex);
    Segment* const known =
        Find([id](const Segment& segment) { return segment.memory && segment.id == id; });
    if (known && known->use == Use::Promised && !address && flags == 0)
    {
        known->use = Use::Attached;
        return known->memory;
    }
    void* const memory = next(id, address, flags);
    if (memory == reinterpret_cast<void*>(-1))
        return memory;
    // Until this other place is detached, it is not ours alone.
    if (known && known->use == Use::Promised)
        known->use = Use::None;
    shmid_ds about{};
    if (shmctl(id, IPC_STAT, &about) != 0 || !IsOwn(about))
        return memory;
    if (!known && flags == 0)
        Keep(id, about, memory);
    shmctl(id, IPC_RMID, nullptr);
    return memory;
}

int DetachSegment(const void* memory) noexcept
{
    const std::lock_guard lock(gMutex);
    Segment* const segment =
        Find([memory](const Segment& known) { return memory && known.memory == memory; });
    if (!segment)
        return Detach(memory);
    if (segment->use != Use::Attached)
    {
        errno = EINVAL;
        return -1;
    }
    segment->use = Use::None;
    if (!Find([](const Segment& other) { return other.memory && other.use != Use::None; }))
        Drop([](const Segment&) { return true; });
    return 0;
}
