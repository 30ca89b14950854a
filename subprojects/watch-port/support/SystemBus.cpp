#include "support/SystemBus.h"

#include "support/QuietLog.h"

#include <Ecore.h>

namespace
{
bool sHasDied = false;

// Ecore's own listeners of the system bus are kept out: they report a missing bus as an error and
// crash on a malformed PropertiesChanged.
bool InitialiseEldbus()
{
    ecore_app_no_system_modules();
    return eldbus_init() > 0;
}

void DisconnectedCB(void* /*data*/, Eldbus_Connection* /*bus*/, void* /*event*/)
{
    sHasDied = true;
}

Eldbus_Connection* Connect()
{
    if (!InitialiseEldbus())
        return nullptr;
    const QuietLog bus("eldbus");
    const QuietLog safety("eina_safety");
    Eldbus_Connection* connection = eldbus_connection_get(ELDBUS_CONNECTION_TYPE_SYSTEM);
    if (connection)
        eldbus_connection_event_callback_add(connection, ELDBUS_CONNECTION_EVENT_DISCONNECTED,
                                             DisconnectedCB, nullptr);
    return connection;
}
} // namespace

Eldbus_Connection* SystemBus()
{
    static Eldbus_Connection* const sConnection = Connect();
    return sHasDied ? nullptr : sConnection;
}
