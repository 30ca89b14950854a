#ifndef TESTS_CONTRACT_HARNESS_TOOLKIT_H
#define TESTS_CONTRACT_HARNESS_TOOLKIT_H

#include "harness/Platform.h"
#include "harness/Recorder.h"
#include "support/Toolkit.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

/** Starts the toolkit with the watch's own theme and scale. */
void StartToolkit();

/**
 * Deletes a window and waits for its end: the toolkit frees the canvas, and what is left on it,
 * on the main loop.
 */
void DeleteWindow(Evas_Object* window);

/**
 * A test with a fresh recorder, watch and window.
 *
 * The framework's two singletons are gone before and after each test, and nothing that the
 * fixture does is recorded.
 */
class ToolkitTest : public testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    /** "window" in the recorded calls. */
    Evas_Object* mWindow = nullptr;
};

/** Gives readable lines in the order of the calls. */
using Recorder::Lines;

#endif
