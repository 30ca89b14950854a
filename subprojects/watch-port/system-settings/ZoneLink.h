#ifndef WATCH_PORT_SYSTEM_SETTINGS_ZONE_LINK_H
#define WATCH_PORT_SYSTEM_SETTINGS_ZONE_LINK_H

#include <Ecore.h>
#include <Ecore_File.h>
#include <functional>
#include <string>

namespace WatchPort
{

/**
 * Reads the name of the machine's time zone from /etc/localtime: what follows "zoneinfo/" in the
 * link, else all of it. For a file in the place of the link it is the time of its last change, and
 * for nothing, which the C library takes for UTC, "UTC".
 */
std::string ReadZoneLink();

/** Watches /etc/localtime while it lives. */
class ZoneLink
{
public:
    /**
     * @param onEvent Called from the main loop after anything has happened to the link; once for
     *                all that happened at a time. It may delete the watch.
     */
    explicit ZoneLink(std::function<void()> onEvent);
    ~ZoneLink();
    ZoneLink(const ZoneLink&) = delete;
    ZoneLink& operator=(const ZoneLink&) = delete;

private:
    static void SFileEventCB(void* data, Ecore_File_Monitor* monitor, Ecore_File_Event event,
                             const char* path);
    static void STellCB(void* data);

    const std::function<void()> mOnEvent;
    Ecore_File_Monitor* mMonitor = nullptr;
    Ecore_Job* mTelling = nullptr;
};

} // namespace WatchPort

#endif
