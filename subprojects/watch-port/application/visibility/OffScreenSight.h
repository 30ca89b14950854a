#ifndef WATCH_PORT_APPLICATION_VISIBILITY_OFF_SCREEN_SIGHT_H
#define WATCH_PORT_APPLICATION_VISIBILITY_OFF_SCREEN_SIGHT_H

#include "application/display/Display.h"
#include "application/visibility/Sight.h"

namespace WatchPort
{

/** Nothing covers a window off screen: it is in sight from its first frame on, while it is shown.
 */
class OffScreenSight : public Sight
{
public:
    /** @param display Outlives the object. */
    explicit OffScreenSight(const Display& display) : mDisplay(display) {}

    void Update() override;
    bool CanBeSeen(const Ecore_Evas* window) const override;
    bool IsAskedFor(const Ecore_Evas* /*window*/) const override { return false; }

protected:
    /** Whether the window is neither hidden nor minimised. */
    static bool IsShown(const Ecore_Evas* window);

    const Display& mDisplay;
};

} // namespace WatchPort

#endif
