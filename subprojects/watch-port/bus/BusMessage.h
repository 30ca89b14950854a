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

/** Throws std::bad_alloc unless the bus library had memory for what it was asked to do. */
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

/** Tells whether what is left of an iterator is of a type. */
bool HasSignature(DBusMessageIter* value, const char* signature);

/**
 * Reads the next value, which must be a text.
 *
 * @return Valid as long as the message; the iterator is one value further.
 */
const char* ReadText(DBusMessageIter* iter);

/** Returns what is in the next value, which must be a container; the iterator is one further. */
DBusMessageIter Enter(DBusMessageIter* iter);

/** Takes the value out of an answer that is one variant; false for an error and any other. */
bool GetVariant(DBusMessage* answer, DBusMessageIter& value);

/** Tells whether an answer is an error. A missing one counts as such. */
bool IsError(const BusMessage& answer);

} // namespace WatchPort

#endif
