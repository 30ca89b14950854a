#include "app-control/messages/RequestWriter.h"

#include "app-control/ApplicationId.h"
#include "app-control/messages/ExtraData.h"
#include "app-control/messages/LaunchInterface.h"

namespace WatchPort
{

namespace
{
void AppendAction(DBusMessageIter* iter, const LaunchRequest& request)
{
    AppendText(iter, request.operation);
    DBusMessageIter parameters;
    DBusMessageIter variant;
    RequireMemory(dbus_message_iter_open_container(iter, DBUS_TYPE_ARRAY, "v", &parameters));
    RequireMemory(
        dbus_message_iter_open_container(&parameters, DBUS_TYPE_VARIANT, "a{sv}", &variant));
    AppendVariants(&variant, request.extraData);
    RequireMemory(dbus_message_iter_close_container(&parameters, &variant));
    RequireMemory(dbus_message_iter_close_container(iter, &parameters));
}
} // namespace

BusMessage RequestWriter::WriteLaunch(const LaunchRequest& request)
{
    BusMessage message = NewCall(request.appId, ApplicationObjectPath(request.appId),
                                 kLaunchInterface, "Launch", {request.operation});
    DBusMessageIter iter;
    dbus_message_iter_init_append(message.get(), &iter);
    AppendTexts(&iter, request.extraData);
    return message;
}

BusMessage RequestWriter::WriteForDesktop(const LaunchRequest& request)
{
    const bool isPlain =
        request.operation == APP_CONTROL_OPERATION_DEFAULT && request.extraData.empty();
    BusMessage message = NewCall(request.appId, ApplicationObjectPath(request.appId),
                                 kApplicationInterface, isPlain ? "Activate" : "ActivateAction");
    DBusMessageIter iter;
    dbus_message_iter_init_append(message.get(), &iter);
    if (!isPlain)
        AppendAction(&iter, request);
    const ExtraData noPlatformData;
    AppendVariants(&iter, noPlatformData);
    return message;
}

} // namespace WatchPort
