#include "app-control/SessionBus.h"

SessionBus::SessionBus()
{
    eldbus_init();
    mConnection = eldbus_connection_get(ELDBUS_CONNECTION_TYPE_SESSION);
}

SessionBus::~SessionBus()
{
    if (mConnection != nullptr)
        eldbus_connection_unref(mConnection);
    eldbus_shutdown();
}
