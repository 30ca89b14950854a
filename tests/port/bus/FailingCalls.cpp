#include "FailingCalls.h"

#include <Ecore.h>
#include <cstdarg>
#include <dbus/dbus.h>

namespace
{
std::string sFailing;

bool Fails(const char* function)
{
    const bool fails = sFailing == function;
    if (fails)
        sFailing.clear();
    return fails;
}
} // namespace

void FailingCalls::FailNext(const std::string& function)
{
    sFailing = function;
}

bool FailingCalls::IsToCome()
{
    return !sFailing.empty();
}

extern "C" {
decltype(dbus_message_new_method_call) __real_dbus_message_new_method_call;
decltype(dbus_message_iter_open_container) __real_dbus_message_iter_open_container;
decltype(dbus_connection_send) __real_dbus_connection_send;
decltype(ecore_main_fd_handler_add) __real_ecore_main_fd_handler_add;

DBusMessage* __wrap_dbus_message_new_method_call(const char* service, const char* path,
                                                 const char* interface, const char* method)
{
    return Fails("dbus_message_new_method_call")
               ? nullptr
               : __real_dbus_message_new_method_call(service, path, interface, method);
}

dbus_bool_t __wrap_dbus_message_iter_open_container(DBusMessageIter* iter, int type,
                                                    const char* signature, DBusMessageIter* sub)
{
    return !Fails("dbus_message_iter_open_container") &&
           __real_dbus_message_iter_open_container(iter, type, signature, sub);
}

dbus_bool_t __wrap_dbus_connection_send(DBusConnection* connection, DBusMessage* message,
                                        dbus_uint32_t* serial)
{
    return !Fails("dbus_connection_send") &&
           __real_dbus_connection_send(connection, message, serial);
}

Ecore_Fd_Handler* __wrap_ecore_main_fd_handler_add(int descriptor, Ecore_Fd_Handler_Flags flags,
                                                   Ecore_Fd_Cb callback, const void* data,
                                                   Ecore_Fd_Cb buffered, const void* bufferData)
{
    return Fails("ecore_main_fd_handler_add")
               ? nullptr
               : __real_ecore_main_fd_handler_add(descriptor, flags, callback, data, buffered,
                                                  bufferData);
}
}
