#include "bus/BusMessage.h"

#include <cstring>
#include <new>

namespace WatchPort
{

void RequireMemory(bool hadMemory)
{
    if (!hadMemory)
        throw std::bad_alloc();
}

BusMessage NewCall(const std::string& service, const std::string& path, const char* interface,
                   const char* method, std::initializer_list<std::string> texts)
{
    BusMessage call(dbus_message_new_method_call(service.c_str(), path.c_str(), interface, method));
    RequireMemory(call != nullptr);
    DBusMessageIter iter;
    dbus_message_iter_init_append(call.get(), &iter);
    for (const std::string& text : texts)
        AppendText(&iter, text);
    return call;
}

void AppendText(DBusMessageIter* iter, const std::string& text)
{
    const char* const value = text.c_str();
    RequireMemory(dbus_message_iter_append_basic(iter, DBUS_TYPE_STRING, &value));
}

bool HasSignature(DBusMessageIter* value, const char* signature)
{
    char* const actual = dbus_message_iter_get_signature(value);
    RequireMemory(actual != nullptr);
    const bool isEqual = std::strcmp(actual, signature) == 0;
    dbus_free(actual);
    return isEqual;
}

const char* ReadText(DBusMessageIter* iter)
{
    const char* text = nullptr;
    dbus_message_iter_get_basic(iter, &text);
    dbus_message_iter_next(iter);
    return text;
}

DBusMessageIter Enter(DBusMessageIter* iter)
{
    DBusMessageIter inside;
    dbus_message_iter_recurse(iter, &inside);
    dbus_message_iter_next(iter);
    return inside;
}

bool GetVariant(DBusMessage* answer, DBusMessageIter& value)
{
    DBusMessageIter iter;
    if (dbus_message_get_type(answer) != DBUS_MESSAGE_TYPE_METHOD_RETURN ||
        !dbus_message_has_signature(answer, "v") || !dbus_message_iter_init(answer, &iter))
        return false;
    value = Enter(&iter);
    return true;
}

bool IsError(const BusMessage& answer)
{
    return !answer || dbus_message_get_type(answer.get()) == DBUS_MESSAGE_TYPE_ERROR;
}

} // namespace WatchPort
