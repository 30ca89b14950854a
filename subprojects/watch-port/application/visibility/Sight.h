#ifndef WATCH_PORT_APPLICATION_VISIBILITY_SIGHT_H
#define WATCH_PORT_APPLICATION_VISIBILITY_SIGHT_H

#include <Ecore_Evas.h>

namespace WatchPort
{

/** What a kind of display tells of whether windows can be seen, whoever has left them. */
class Sight
{
public:
    Sight() = default;
    virtual ~Sight() = default;
    Sight(const Sight&) = delete;
    Sight& operator=(const Sight&) = delete;

    /** Sums up what has been told since the last call. */
    virtual void Update() = 0;

    /** Whether the user can see the window, as of the last Update(). */
    virtual bool CanBeSeen(const Ecore_Evas* window) const = 0;

    /** Whether the user has asked for the window between the last two calls of Update(). */
    virtual bool IsAskedFor(const Ecore_Evas* window) const = 0;
};

} // namespace WatchPort

#endif
