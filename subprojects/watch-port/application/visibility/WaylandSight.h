#ifndef WATCH_PORT_APPLICATION_VISIBILITY_WAYLAND_SIGHT_H
#define WATCH_PORT_APPLICATION_VISIBILITY_WAYLAND_SIGHT_H

#include "application/visibility/OffScreenSight.h"

namespace WatchPort
{

/**
 * Wayland does not say what covers a window: one that was active is in sight until it is minimised
 * or another one is active. One that the compositor has not made active since it was shown is in
 * sight once it is drawn.
 */
class WaylandSight : public OffScreenSight
{
public:
    using OffScreenSight::OffScreenSight;

    void Update() override;
    bool CanBeSeen(const Ecore_Evas* window) const override;

private:
    static void NoteActivation(Ecore_Evas* window);
};

} // namespace WatchPort

#endif
