#ifndef WATCH_PORT_APP_CONTROL_LAUNCH_BUS_H
#define WATCH_PORT_APP_CONTROL_LAUNCH_BUS_H

#include <Eldbus.h>
#include <string>

/** What became of the wish for a name. */
enum class NameAnswer
{
    NoAnswer,
    Owned,
    Taken, /**< Another process owns it. */
};

/** What launch requests ask of the process's connection to the session bus. */
class LaunchBus
{
public:
    /** Connects, unless the process is connected already or no bus answers. */
    LaunchBus();

    bool IsConnected() const { return mConnection != nullptr; }
    Eldbus_Connection* Connection() const { return mConnection; }

    /** Asks for a name and waits for the answer, a second at most. */
    NameAnswer RequestName(const std::string& name) const;

    /**
     * Sends a call to its destination and waits for the answer.
     *
     * @param call Is released.
     * @param timeout In milliseconds.
     * @return The answer or an error, which the caller releases; null when there is no connection.
     */
    Eldbus_Message* Call(const std::string& name, const std::string& path, const char* interface,
                         Eldbus_Message* call, double timeout) const;

private:
    Eldbus_Connection* mConnection;
};

#endif
