#ifndef TESTS_CONTRACT_WALKS_WALKS_H
#define TESTS_CONTRACT_WALKS_WALKS_H

#include "walks/Step.h"
#include <functional>

/** Random walks one after the other, and the shortest of one that fails. */
namespace Walks
{

/** Takes these steps. @return what went wrong; empty when nothing did */
using Try = std::function<std::string(const Steps&)>;

/**
 * Tries this many walks from this seed on, and tells on standard output how many steps they had.
 *
 * One that ends the process leaves its seed on standard error. A single walk is tried in processes
 * of its own, so that the shortest that still ends one can be found.
 *
 * @return for the first that fails its seed, what went wrong and the shortest steps that bring it
 *         about; empty when none does
 */
std::string Fail(const Try& fails, unsigned first, unsigned count);

} // namespace Walks

#endif
