#ifndef TESTS_SUPPORT_TOOLKIT_H
#define TESTS_SUPPORT_TOOLKIT_H

#include <Elementary.h>

#include <functional>

/** The real toolkit without a screen. */
namespace Toolkit
{

/** The width and height of a watch's screen, in pixels. */
constexpr int kSide = 360;

/** The id of the window that takes input, in the events of the toolkit. */
constexpr Ecore_Window kWindowId = 4242;

/**
 * Starts the toolkit off screen, unless it runs already, with nothing of the machine's desktop.
 *
 * @param theme a file that is laid over the toolkit's own theme, or null
 */
void Start(const char* theme = nullptr);

/** Ends the toolkit; it can be started again. */
void Stop();

/** A shown window, which the caller deletes. */
Evas_Object* AddWindow(int side = kSide);

/** Lets events with the window's id reach a window, with the pointer in its middle. */
void TakeInput(Evas_Object* window);

/** Undoes TakeInput(). */
void LeaveInput();

/** Has the wheel turned; the event waits in the queue. */
void TurnWheel(int notches, unsigned int timestamp = 0, int direction = 0);

/** Runs the main loop until the condition holds; false after five seconds without. */
bool RunUntil(const std::function<bool()>& condition);

} // namespace Toolkit

#endif
