#ifndef TESTS_PORT_BUS_FAILING_CALLS_H
#define TESTS_PORT_BUS_FAILING_CALLS_H

#include <string>

/** Calls of the libraries that the linker has sent to the test. */
namespace FailingCalls
{

/** Has the next call of a function fail as for lack of memory; it is named as in C. */
void FailNext(const std::string& function);

/** Whether the call that was to fail is still to come. */
bool IsToCome();

} // namespace FailingCalls

#endif
