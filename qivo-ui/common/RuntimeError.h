#ifndef QIVO_UI_COMMON_RUNTIMEERROR_H
#define QIVO_UI_COMMON_RUNTIMEERROR_H

#include <sstream>
#include <stdexcept>

namespace QivoUi
{

/**
 * Throws a std::runtime_error that reads "[function]reason".
 *
 * For operations that check several preconditions and catch their own failure in one place.
 */
[[noreturn]] inline void ThrowRuntimeError(const char* function, const char* reason)
{
    std::ostringstream message;
    message << "[" << function << "]" << reason;
    throw std::runtime_error(message.str());
}

} // namespace QivoUi

#endif
