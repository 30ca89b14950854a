#ifndef WATCH_PORT_APPLICATION_ACCESS_SCREEN_READER_H
#define WATCH_PORT_APPLICATION_ACCESS_SCREEN_READER_H

#include "bus/BusListener.h"

#include <functional>
#include <memory>
#include <string>

namespace WatchPort
{

/**
 * Whether a screen reader on the desktop reads what applications show: "ScreenReaderEnabled" or
 * "IsEnabled" of org.a11y.Status on the session bus, followed while readers come and go.
 *
 * The service is never started by this. Answers of another shape are ignored, and so are addresses
 * of a bus that are not those of a socket of this machine: others can run a program.
 */
class ScreenReader : private BusListener
{
public:
    /**
     * Called with the address of the readers' bus while a screen reader runs, and with an empty one
     * while none does; also without a change. Comes from the main loop, never from inside a call of
     * this class.
     */
    using Callback = std::function<void(const std::string& address)>;

    /** @return null when there is no session bus; nothing is logged then */
    static std::unique_ptr<ScreenReader> Follow(Callback onAnswer);

private:
    ScreenReader(BusConnection& bus, Callback onAnswer);

    void OnAppeared() override;
    void OnAnswer(DBusMessage* answer) override;
    void OnSignal(DBusMessage* signal) override;
    void OnGone() override;

    void AskAddress();

    const Callback mOnAnswer;
    bool mIsAskingAddress = false;
};

} // namespace WatchPort

#endif
