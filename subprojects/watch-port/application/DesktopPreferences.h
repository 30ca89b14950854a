#ifndef WATCH_PORT_APPLICATION_DESKTOP_PREFERENCES_H
#define WATCH_PORT_APPLICATION_DESKTOP_PREFERENCES_H

#include "application/display/Display.h"
#include "system-settings/PortalSettings.h"

#include <memory>
#include <set>
#include <string>

namespace WatchPort
{

/**
 * How the user wants applications to look, by the desktop's settings portal: "text-scaling-factor"
 * and "enable-animations" of "org.gnome.desktop.interface", "contrast" of
 * "org.freedesktop.appearance". Followed while the object lives; what the portal said last stands
 * when it leaves, and the usual look where it has said nothing.
 *
 * A value of another type, or a factor that is not finite, changes nothing and is one warning until
 * a right one has come. A factor that is too small or too large is taken for the nearest that is
 * not.
 */
class DesktopPreferences
{
public:
    /** Asks the portal; the answer may come while the toolkit starts. */
    DesktopPreferences();
    DesktopPreferences(const DesktopPreferences&) = delete;
    DesktopPreferences& operator=(const DesktopPreferences&) = delete;

    /**
     * Applies what the portal has said while the toolkit started, and what it says from now on. The
     * toolkit must be up, on a display that is there as long as messages are taken. Nothing is
     * waited for: a portal that hangs must not delay the first frame.
     */
    void Begin(const Display& display);

private:
    struct Look
    {
        double textSize = 1.0;
        bool isStill = false;
        bool hasHighContrast = false;
    };

    void TakeTextSize(DBusMessageIter* value);
    void TakeAnimations(DBusMessageIter* value);
    void TakeContrast(DBusMessageIter* value);
    template <typename Value> void Accept(const char* key, Value& wanted, Value value);
    void Refuse(const char* key, const char* why);
    void Apply();

    const Display* mDisplay = nullptr;
    Look mWanted;
    Look mShown;
    std::set<std::string> mRefused;
    std::unique_ptr<PortalSettings> mPortal;
};

} // namespace WatchPort

#endif
