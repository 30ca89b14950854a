#include "base/ApplicationCalls.h"

namespace WatchPort
{

namespace
{
bool sAreAllowed = true;
} // namespace

bool MayCallApplication()
{
    return sAreAllowed;
}

void AllowApplicationCalls(bool areAllowed)
{
    sAreAllowed = areAllowed;
}

} // namespace WatchPort
