#ifndef SIMULATOR_HOME_WATCH_CLOCK_H
#define SIMULATOR_HOME_WATCH_CLOCK_H

#include <cstdint>

/**
 * The watch's own time, which may differ from the machine's. Set now and then, it goes on by
 * itself.
 *
 * All moments are in milliseconds of a clock that is never set, all times in milliseconds since
 * the epoch.
 */
class WatchClock
{
public:
    /** The time was `time` at the moment `now`. */
    void Set(int64_t time, int64_t now);

    /** A frozen clock stops at its time of this moment; a thawed one goes on from there. */
    void Freeze(bool isFrozen, int64_t now);

    int64_t GetTime(int64_t now) const;
    bool IsFrozen() const { return mIsFrozen; }

    /** How long it takes from `now` to the next full minute; never 0. */
    int64_t GetMillisecondsToMinute(int64_t now) const;

private:
    int64_t mTime = 0;
    int64_t mMoment = 0;
    bool mIsFrozen = false;
};

/** The clock's hands, in degrees clockwise from 12. */
struct Hands
{
    double hour;
    double minute;
};

/** The hands at a time, in the process's time zone; full minutes count. */
Hands HandsAt(int64_t time);

#endif
