#ifndef WATCH_PORT_SYSTEM_SETTINGS_PORTAL_SETTINGS_H
#define WATCH_PORT_SYSTEM_SETTINGS_PORTAL_SETTINGS_H

#include "bus/BusListener.h"

#include <functional>
#include <memory>
#include <vector>

namespace WatchPort
{

/** A setting of the desktop's settings portal, and who takes it. */
struct PortalSetting
{
    const char* space;
    const char* key;
    /** Called with a value of any type at every reading, changed or not. */
    std::function<void(DBusMessageIter* value)> take;
};

/** The namespace in which most desktops keep what the portal's own namespaces lack. */
constexpr char kDesktopInterface[] = "org.gnome.desktop.interface";

/**
 * Some of the desktop's settings, followed through the settings portal while it starts, restarts
 * and leaves. The portal is started by the first question where the bus can do so, and by nothing
 * after it. Answers and signals of another shape are ignored silently.
 *
 * All callbacks come from the main loop or from TakeAnswer(), never from inside another call of
 * this class.
 */
class PortalSettings : private BusListener
{
public:
    /**
     * @param settings Their texts must outlive the result.
     * @param onAnswer Called after the settings have been taken that the portal told of: all that
     *                 it has, one, or none when it has none or has gone. It may delete the object
     *                 that calls it, but for a call from TakeAnswer().
     * @return Null when there is no session bus; nothing is logged then.
     */
    static std::unique_ptr<PortalSettings> Follow(std::vector<PortalSetting> settings,
                                                  std::function<void()> onAnswer);

    /** Takes an answer that has come, and all else that the session bus has sent before it. */
    using BusListener::TakeAnswer;

private:
    PortalSettings(BusConnection& bus, std::vector<PortalSetting> settings,
                   std::function<void()> onAnswer);

    void OnAppeared() override;
    void OnAnswer(DBusMessage* answer) override;
    void OnSignal(DBusMessage* signal) override;
    void OnGone() override;

    BusMessage NewQuestion() const;
    void Take(const char* space, DBusMessageIter values);
    bool Take(const char* space, const char* key, DBusMessageIter value);

    const std::vector<PortalSetting> mSettings;
    const std::function<void()> mOnAnswer;
};

} // namespace WatchPort

#endif
