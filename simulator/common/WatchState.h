#ifndef SIMULATOR_COMMON_WATCH_STATE_H
#define SIMULATOR_COMMON_WATCH_STATE_H

#include <cstdint>
#include <string>
#include <vector>

/** An application that is installed on the watch, in the watch's language. */
struct InstalledApp
{
    std::string id;
    std::string name;
    std::string icon; ///< a picture's file; empty when there is none

    bool operator==(const InstalledApp& other) const
    {
        return id == other.id && name == other.name && icon == other.icon;
    }
};

/** What the keeper says about the watch, as far as it is shown; first the values before that. */
struct WatchState
{
    bool isScreenOn = true;
    int bezelPosition = 0; ///< detents turned so far, clockwise positive
    bool isBackPressed = false;
    bool isPowerPressed = false;
    bool isPlugged = false;
    bool isCharging = false; ///< false when the battery is full
    double percentage = 100;
    int64_t time = 0; ///< the watch's, in milliseconds since the epoch, at the last report
    bool isTimeFrozen = false;
    double textSize = 1; ///< how large the user wants all text, from 0.8 to 2
    bool isMotionReduced = false;
    bool isContrastHigh = false;
    std::vector<InstalledApp> apps;
    std::string zone; ///< such as "Asia/Seoul"; empty: the machine's
};

#endif
