#ifndef SIMULATOR_COMMON_WATCH_STATE_H
#define SIMULATOR_COMMON_WATCH_STATE_H

#include <cstdint>
#include <string>

/** What the keeper tells of the watch, as far as it is seen; the values before it told anything. */
struct WatchState
{
    bool isScreenOn = true;
    int bezelPosition = 0; ///< detents turned so far, clockwise positive
    bool isBackPressed = false;
    bool isPowerPressed = false;
    bool isPlugged = false;
    bool isCharging = false; ///< not when the battery is full
    double percentage = 100;
    int64_t time = 0; ///< the watch's, in milliseconds since the epoch, when it was told
    bool isTimeFrozen = false;
    std::string zone; ///< such as "Asia/Seoul"; empty: the machine's
};

#endif
