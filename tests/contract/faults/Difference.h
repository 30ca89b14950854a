#ifndef TESTS_CONTRACT_FAULTS_DIFFERENCE_H
#define TESTS_CONTRACT_FAULTS_DIFFERENCE_H

#include "harness/Recorder.h"

/** How the lines of an operation with a failure differ from its ordinary ones. */
struct Difference
{
    /**
     * The differences from the top down, by the number of the ordinary line:
     *
     *     - 4: elm_win_title_set(window1, 'title')     left out
     *     - 4 to 9: FIRST ... LAST                     left out, one after the other
     *     ~ 10: elm_bg_add(null)                       the same call with other arguments
     *     + after 3: error(CreateWindow) elm_win_add   in addition
     */
    Recorder::Lines lines;

    /** The calls that are left out; log lines and listeners are not counted. */
    int abandonedCalls = 0;
};

Difference Compare(const Recorder::Lines& ordinary, const Recorder::Lines& actual);

#endif
