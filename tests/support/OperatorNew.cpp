// The program's operator new: as the language wants it, but the allocation that a test has chosen
// fails once before it is tried again, or all fail.

#include "support/Allocations.h"
#include <cstdlib>
#include <new>

namespace
{

bool IsUnderTest()
{
    return Allocations::sIsCounting && Allocations::sPauses == 0;
}

bool FailsNow()
{
    return IsUnderTest() &&
           (++Allocations::sCount == Allocations::sFailing || Allocations::sIsExhausted);
}

} // namespace

void* operator new(std::size_t size)
{
    void* memory = FailsNow() ? nullptr : std::malloc(size);
    while (!memory)
    {
        const std::new_handler handler = std::get_new_handler();
        if (!handler)
        {
            throw std::bad_alloc();
        }
        handler();
        memory = IsUnderTest() && Allocations::sIsExhausted ? nullptr : std::malloc(size);
    }
    return memory;
}

// As the C++ library has it; that of a sanitizer would not go with this file's delete.
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept
try
{
    return operator new(size);
}
catch (const std::bad_alloc&)
{
    return nullptr;
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}
