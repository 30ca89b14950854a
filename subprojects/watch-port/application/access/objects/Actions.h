#ifndef WATCH_PORT_APPLICATION_ACCESS_ACTIONS_H
#define WATCH_PORT_APPLICATION_ACCESS_ACTIONS_H

#include "application/access/objects/Accessible.h"

#include <string>

namespace WatchPort
{

/**
 * What a screen reader can do to an object, as a finger or a key would. What a finger cannot work
 * now, since it is disabled or a screen is moving, a reader cannot either. The application may hear
 * of it at once and delete the object.
 */

/** The one action of an object: "click", "toggle", "back" of a window; null for none. */
const char* ActionOf(const Accessible& object);

/** Does it; false when that cannot be done now. */
bool DoAction(const Accessible& object);

/** Whether the object can have the keyboard. */
bool IsFocusable(const Accessible& object);

/** Gives the object the keyboard of its window; false when it cannot have it now. */
bool GiveFocus(const Accessible& object);

/** Whether the object is an entry that the user may write into. */
bool IsEditable(const Accessible& object);

/** What such an entry holds, as it is, a password too. */
std::string ReadEntry(const Accessible& entry);

/** Writes the whole text of such an entry; false when that cannot be done now or it is too long. */
bool WriteEntry(const Accessible& entry, const std::string& text);

} // namespace WatchPort

#endif
