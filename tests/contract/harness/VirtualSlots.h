#ifndef TESTS_CONTRACT_HARNESS_VIRTUALSLOTS_H
#define TESTS_CONTRACT_HARNESS_VIRTUALSLOTS_H

#include "harness/Recorder.h"

namespace Recorder
{

/**
 * The first virtual operations of an object in table order, by class and name.
 *
 * A virtual destructor takes two places, and a function of an unnamed namespace reads "?".
 */
inline Lines VirtualSlots(const void* object, int count)
{
    const void* const* table = *static_cast<const void* const* const*>(object);
    Lines slots;
    for (int slot = 0; slot < count; ++slot)
    {
        slots.push_back(DescribeFunction(table[slot]));
    }
    return slots;
}

} // namespace Recorder

#endif
