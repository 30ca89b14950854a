#ifndef TESTS_CONTRACT_COMMON_DIRTYMEMORY_H
#define TESTS_CONTRACT_COMMON_DIRTYMEMORY_H

#include <cstring>
#include <new>

/** An object in memory that was not zero before, so that a forgotten first value shows. */
template <typename T> class InDirtyMemory
{
public:
    InDirtyMemory()
    {
        std::memset(mBytes, 0xa5, sizeof(mBytes));
        mObject = new (mBytes) T;
    }
    ~InDirtyMemory() { mObject->~T(); }
    InDirtyMemory(const InDirtyMemory&) = delete;
    InDirtyMemory& operator=(const InDirtyMemory&) = delete;

    T* operator->() { return mObject; }

private:
    alignas(T) unsigned char mBytes[sizeof(T)];
    T* mObject;
};

#endif
