#ifndef WATCH_PORT_BASE_CALL_BACK_H
#define WATCH_PORT_BASE_CALL_BACK_H

namespace WatchPort
{

/**
 * Calls a callback that may delete the object that keeps it, and so the callback itself: it calls a
 * copy, which lives until the call has returned.
 */
template <typename Callback, typename... Arguments>
void CallBack(Callback callback, Arguments... arguments)
{
    callback(arguments...);
}

} // namespace WatchPort

#endif
