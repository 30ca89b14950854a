#ifndef WATCH_PORT_APP_CONTROL_EXTRA_DATA_H
#define WATCH_PORT_APP_CONTROL_EXTRA_DATA_H

#include <Eldbus.h>
#include <map>
#include <string>

struct app_control_s;

/** Extra data as they travel on the bus. */
using ExtraData = std::map<std::string, std::string>;

/** Appends extra data as a{sv}. */
void AppendVariants(Eldbus_Message_Iter* iter, const ExtraData& extraData);

/** Appends extra data as a{ss}. */
void AppendTexts(Eldbus_Message_Iter* iter, const ExtraData& extraData);

/** Reads an a{sv}. Values that are no texts are left out, and so are empty keys. */
ExtraData ReadVariants(Eldbus_Message_Iter* entries);

/** Reads an a{ss}. Empty keys are left out. */
ExtraData ReadTexts(Eldbus_Message_Iter* entries);

/** Tells whether the operation and the extra data are more than 1 MiB of text together. */
bool IsTooBig(const app_control_s& request);

#endif
