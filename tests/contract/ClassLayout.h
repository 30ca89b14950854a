#ifndef TESTS_CONTRACT_CLASSLAYOUT_H
#define TESTS_CONTRACT_CLASSLAYOUT_H

#include <cstddef>
#include <cstring>
#include <gtest/gtest.h>
#include <type_traits>
#include <vector>

/**
 * The order of the virtual operations and of the fields is part of what the classes promise.
 *
 * A pointer to a member tells both in the C++ ABI of Linux: the slot of an operation in the
 * table of its class, the offset of a field.
 */
namespace ClassLayout
{

template <typename Pointer> std::ptrdiff_t FirstWordOf(Pointer member)
{
    std::ptrdiff_t word = 0;
    std::memcpy(&word, &member, sizeof(word));
    return word;
}

/** The slot of an operation whose latest body, or declaration, is that of class C. */
template <typename C, typename R, typename... A> int Slot(R (C::*operation)(A...))
{
    constexpr std::ptrdiff_t kVirtualBit = 1;
    return static_cast<int>((FirstWordOf(operation) & ~kVirtualBit) / sizeof(void*));
}

/** A class with one operation more, whose slot tells how many come before it. */
template <typename C> struct Extended : C
{
    virtual void AfterTheLast();
};

/** The destructor has the first two slots, the operations those after it; there are no more. */
template <typename C> void ExpectSlots(const std::vector<int>& operations)
{
    static_assert(std::has_virtual_destructor_v<C>);
    int next = 2;
    for (const int slot : operations)
    {
        EXPECT_EQ(slot, next) << "operation " << next;
        ++next;
    }
    EXPECT_EQ(Slot<Extended<C>>(&Extended<C>::AfterTheLast), next) << "number of operations";
}

struct Field
{
    std::ptrdiff_t offset;
    std::size_t size;
    std::size_t alignment;
};

/** Where class C has a field of type T. */
template <typename C, typename T> Field Place(T C::*field)
{
    return {FirstWordOf(field), sizeof(T), alignof(T)};
}

inline std::size_t Align(std::size_t offset, std::size_t alignment)
{
    return (offset + alignment - 1) / alignment * alignment;
}

/** The given fields follow each other behind those of the base class, and there are no more. */
template <typename C> void ExpectFields(std::size_t begin, const std::vector<Field>& fields)
{
    std::size_t next = begin;
    for (std::size_t i = 0; i < fields.size(); ++i)
    {
        next = Align(next, fields[i].alignment);
        EXPECT_EQ(fields[i].offset, static_cast<std::ptrdiff_t>(next)) << "field " << i + 1;
        next += fields[i].size;
    }
    EXPECT_EQ(sizeof(C), Align(next, alignof(C))) << "number of fields";
}

/** Where the fields of a class begin that only has its table before them. */
constexpr std::size_t kNoBase = sizeof(void*);

} // namespace ClassLayout

#endif
