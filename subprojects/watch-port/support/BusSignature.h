#ifndef WATCH_PORT_SUPPORT_BUS_SIGNATURE_H
#define WATCH_PORT_SUPPORT_BUS_SIGNATURE_H

#include <Eldbus.h>

/**
 * Tells whether a message, or what is left of an iterator, is of a type. To be asked before its
 * contents are taken out: Eldbus reports a mismatch as an error of the program.
 */
bool HasSignature(const Eldbus_Message* message, const char* signature);
bool HasSignature(Eldbus_Message_Iter* value, const char* signature);

/** Takes the variant out of an answer that is one; null for an error and any other answer. */
Eldbus_Message_Iter* GetVariant(const Eldbus_Message* answer);

#endif
