#ifndef TESTS_CONTRACT_HARNESS_TOOLKIT_H
#define TESTS_CONTRACT_HARNESS_TOOLKIT_H

#include "harness/Platform.h"
#include "harness/Recorder.h"
#include <Elementary.h>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

/** The real toolkit, off screen. */
namespace Toolkit
{

/** Starts the toolkit once for the process, with the watch's own theme. */
void Start();

/** Runs the main loop until the condition holds; false after five seconds without. */
bool SpinUntil(const std::function<bool()>& condition);

/** A shown window of the watch's size; the caller deletes it. */
Evas_Object* AddWindow();

/**
 * Deletes a window and waits for its end: the toolkit frees the canvas, and what is left on it,
 * on the main loop.
 */
void DeleteWindow(Evas_Object* window);

} // namespace Toolkit

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
