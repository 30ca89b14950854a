#ifndef TESTS_COUNTS_COUNT_H
#define TESTS_COUNTS_COUNT_H

#include <valgrind/callgrind.h>

/// Has callgrind count a work, and write a profile of it.
template <typename Work> void Count(Work work)
{
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_TOGGLE_COLLECT;
    work();
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_DUMP_STATS;
    CALLGRIND_STOP_INSTRUMENTATION;
}

#endif
