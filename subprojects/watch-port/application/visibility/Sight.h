#ifndef WATCH_PORT_APPLICATION_VISIBILITY_SIGHT_H
#define WATCH_PORT_APPLICATION_VISIBILITY_SIGHT_H

#include <Ecore_Evas.h>

namespace WatchPort
{

/** Which windows one kind of display shows, whether or not the application has left them. */
class Sight
{
public:
    Sight() = default;
    virtual ~Sight() = default;
    Sight(const Sight&) = delete;
    Sight& operator=(const Sight&) = delete;

    /** Takes in the display's events since the last call. */
    virtual void Update() = 0;

    /** Whether the user can see the window, as of the last Update(). */
    virtual bool CanBeSeen(const Ecore_Evas* window) const = 0;

    /** Whether the user asked for the window between the last two calls of Update(). */
    virtual bool IsAskedFor(const Ecore_Evas* window) const = 0;
};

} // namespace WatchPort

#endif
