#ifndef WATCH_PORT_BUS_BUS_MESSAGE_H
#define WATCH_PORT_BUS_BUS_MESSAGE_H

#include <dbus/dbus.h>
#include <initializer_list>
#include <memory>
#include <string>

namespace WatchPort
{

struct BusMessageRelease
{
    void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};

/** A message of the bus library. */
using BusMessage = std::unique_ptr<DBusMessage, BusMessageRelease>;

/** Throws std::bad_alloc if the bus library had no memory for a request. */
void RequireMemory(bool hadMemory);

/**
 * Makes a call.
 *
 * @param texts Its first arguments.
 */
BusMessage NewCall(const std::string& service, const std::string& path, const char* interface,
                   const char* method, std::initializer_list<std::string> texts = {});

/** Appends a text. */
void AppendText(DBusMessageIter* iter, const std::string& text);

/** Whether the iterator's next value has a type. */
bool HasSignature(DBusMessageIter* value, const char* signature);

/**
 * Reads the next value, which must be a text, and advances the iterator.
 *
 * @return Valid as long as the message.
 */
const char* ReadText(DBusMessageIter* iter);

/** Returns the contents of the next value, a container, and advances the iterator. */
DBusMessageIter Enter(DBusMessageIter* iter);

/** Takes the value out of an answer that is one variant; false for any other and for errors. */
bool GetVariant(DBusMessage* answer, DBusMessageIter& value);

/** Whether an answer is an error or missing. */
bool IsError(const BusMessage& answer);

} // namespace WatchPort

#endif
