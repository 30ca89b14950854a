#include "app-control/messages/RequestReader.h"

#include "app-control/messages/ExtraData.h"
#include "bus/BusMessage.h"

namespace WatchPort
{

namespace
{
using RequestReader::Result;

Result ReadEntries(DBusMessageIter entries, ExtraData& extraData)
{
    return ReadExtraData(entries, extraData) ? Result::Read : Result::TooBig;
}

// The only parameter of an action, or none, as the extra data.
Result ReadParameter(DBusMessageIter parameters, ExtraData& extraData)
{
    if (dbus_message_iter_get_arg_type(&parameters) == DBUS_TYPE_INVALID)
        return Result::Read;
    DBusMessageIter parameter = Enter(&parameters);
    if (!HasSignature(&parameter, "a{sv}") ||
        dbus_message_iter_get_arg_type(&parameters) != DBUS_TYPE_INVALID)
        return Result::Malformed;
    return ReadEntries(Enter(&parameter), extraData);
}
} // namespace

Result RequestReader::ReadActivate(DBusMessage* call, LaunchRequest&)
{
    return dbus_message_has_signature(call, "a{sv}") ? Result::Read : Result::Malformed;
}

Result RequestReader::ReadOpen(DBusMessage* call, LaunchRequest& request)
{
    DBusMessageIter iter;
    if (!dbus_message_has_signature(call, "asa{sv}") || !dbus_message_iter_init(call, &iter))
        return Result::Malformed;
    request.operation = "open";
    // As text/uri-list has it, one a line: extra data hold one text for each key.
    std::string& lines = request.extraData["uris"];
    DBusMessageIter uris = Enter(&iter);
    for (bool isFirst = true; dbus_message_iter_get_arg_type(&uris) == DBUS_TYPE_STRING;
         isFirst = false)
    {
        lines.append(isFirst ? "" : "\n").append(ReadText(&uris));
        if (IsTooBig(request))
            return Result::TooBig;
    }
    return Result::Read;
}

Result RequestReader::ReadAction(DBusMessage* call, LaunchRequest& request)
{
    DBusMessageIter iter;
    if (!dbus_message_has_signature(call, "sava{sv}") || !dbus_message_iter_init(call, &iter))
        return Result::Malformed;
    request.operation = ReadText(&iter);
    return ReadParameter(Enter(&iter), request.extraData);
}

Result RequestReader::ReadLaunch(DBusMessage* call, LaunchRequest& request)
{
    DBusMessageIter iter;
    if (!dbus_message_has_signature(call, "sa{ss}") || !dbus_message_iter_init(call, &iter))
        return Result::Malformed;
    request.operation = ReadText(&iter);
    return ReadEntries(Enter(&iter), request.extraData);
}

} // namespace WatchPort
