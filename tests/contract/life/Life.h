#ifndef TESTS_CONTRACT_LIFE_LIFE_H
#define TESTS_CONTRACT_LIFE_LIFE_H

#include "qivo-ui-guide/GuideApplication.h"

/**
 * The whole life of the application, from its main to its exit, as often as one likes in one
 * process: the real toolkit off screen, the watch a fake.
 */
namespace Life
{

/**
 * Runs the application's main. The watch creates it, launches it twice, resumes it, changes
 * language, region, time and format, turns the bezel, plugs and unplugs the charger, scrolls the
 * page, releases the power key, presses the back key, pauses and terminates it. What is missing
 * because a step failed is left out.
 *
 * @return what main returned
 */
int Run();

/** The application while it lives, else null. */
QivoUi::GuideApplication* TheApplication();

/**
 * What a process takes along when it ends: deletes what the application is to leave behind, so
 * that the next life begins as the first did.
 */
void EndProcess();

} // namespace Life

#endif
