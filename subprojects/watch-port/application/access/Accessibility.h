#ifndef WATCH_PORT_APPLICATION_ACCESS_ACCESSIBILITY_H
#define WATCH_PORT_APPLICATION_ACCESS_ACCESSIBILITY_H

#include "application/access/AccessBus.h"
#include "application/access/ScreenReader.h"
#include "application/display/Display.h"

#include <memory>
#include <string>

namespace WatchPort
{

/**
 * Shows the application to a screen reader while there is one on the desktop. Without one the
 * application is on no readers' bus, and nothing is done but to wait for a signal.
 */
class Accessibility
{
public:
    /** @param display Must outlive the object. */
    explicit Accessibility(const Display& display) : mDisplay(display) {}
    ~Accessibility();
    Accessibility(const Accessibility&) = delete;
    Accessibility& operator=(const Accessibility&) = delete;

    /**
     * Looks for a screen reader when the next frame of a window has been drawn, or soon when there
     * is no such window, or no more.
     */
    void FollowAfterFrame(Ecore_Evas* window);

private:
    static void SFrameCB(void* data, Evas* canvas, void* info);
    static void SDeletedCB(void* data, Evas* canvas, Evas_Object* window, void* info);
    static void SFollowJob(void* data);

    void StopAwaitingFrame();
    void FollowSoon();
    void Follow();
    void OnReader(const std::string& address);
    void Join();
    void Leave();

    const Display& mDisplay;
    Ecore_Evas* mAwaited = nullptr;
    Ecore_Job* mFollow = nullptr;
    std::unique_ptr<ScreenReader> mReader;
    std::string mAddress;
    std::unique_ptr<BusConnection> mConnection;
    std::unique_ptr<AccessBus> mBus;
};

} // namespace WatchPort

#endif
