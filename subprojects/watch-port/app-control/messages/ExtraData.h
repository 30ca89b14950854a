#ifndef WATCH_PORT_APP_CONTROL_MESSAGES_EXTRA_DATA_H
#define WATCH_PORT_APP_CONTROL_MESSAGES_EXTRA_DATA_H

#include "app-control/LaunchRequest.h"

#include <dbus/dbus.h>
#include <map>
#include <string>

namespace WatchPort
{

/** Extra data as they travel on the bus. */
using ExtraData = std::map<std::string, std::string>;

/** How many entries a request may have. */
constexpr size_t kMostEntries = 4096;

/** What is said of more. */
constexpr char kTooBig[] = "more than 1 MiB of text or 4096 entries";

/** Appends extra data as a{sv}. */
void AppendVariants(DBusMessageIter* iter, const ExtraData& extraData);

/** Appends extra data as a{ss}. */
void AppendTexts(DBusMessageIter* iter, const ExtraData& extraData);

/**
 * Reads the entries of an a{sv} or a{ss}. Values that are no texts are left out, and so are empty
 * keys, which no request can have.
 *
 * @return False when there are more than kMostEntries, those that are left out and those that
 *         replace others included, or more than 1 MiB of text.
 */
bool ReadExtraData(DBusMessageIter entries, ExtraData& extraData);

/** How much text there is: keys and values, in bytes. */
size_t CountBytes(const ExtraData& extraData);

/**
 * Tells whether the operation and the extra data are more than 1 MiB of text together, or
 * kMostEntries are exceeded.
 */
bool IsTooBig(const LaunchRequest& request);

} // namespace WatchPort

#endif
