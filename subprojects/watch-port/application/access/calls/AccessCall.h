#ifndef WATCH_PORT_APPLICATION_ACCESS_ACCESS_CALL_H
#define WATCH_PORT_APPLICATION_ACCESS_ACCESS_CALL_H

#include "application/access/AccessTree.h"
#include "application/access/AccessWriter.h"

#include <string>

namespace WatchPort
{

constexpr char kAccessibleInterface[] = "org.a11y.atspi.Accessible";
constexpr char kActionInterface[] = "org.a11y.atspi.Action";
constexpr char kApplicationInterfaceOfReaders[] = "org.a11y.atspi.Application";
constexpr char kComponentInterface[] = "org.a11y.atspi.Component";
constexpr char kEditableTextInterface[] = "org.a11y.atspi.EditableText";
constexpr char kImageInterface[] = "org.a11y.atspi.Image";
constexpr char kTextInterface[] = "org.a11y.atspi.Text";

/** Where the readers' registry keeps the application: the parent of its root. */
struct AccessDesktop
{
    std::string bus;
    std::string path;
};

/** One call of a screen reader on an object of the tree. */
struct AccessCall
{
    const AccessTree& tree;
    const AccessDesktop& desktop;
    const Accessible& object;
    DBusMessage* message;
    AccessWriter& answer;

    /** Takes the arguments, which must be these and no others. */
    template <typename... Values> bool Take(Values... values) const
    {
        return dbus_message_get_args(message, nullptr, values..., DBUS_TYPE_INVALID);
    }
};

/**
 * A method: writes the answer; false when the arguments are not what it takes. Null for one that
 * would set a property.
 */
struct AccessMethod
{
    const char* interface;
    const char* member;
    bool (*run)(const AccessCall& call);
};

/** A property, which only the process sets: the registry's number of it too, which none asks for.
 */
struct AccessProperty
{
    const char* interface;
    const char* name;
    const char* signature;
    void (*write)(const AccessCall& call, AccessWriter& value);
};

/** Whether an object has an interface. */
bool HasInterface(const Accessible& object, const std::string& interface);

/** The methods of each interface, ended by one without a member. */
extern const AccessMethod kObjectMethods[];
extern const AccessMethod kComponentMethods[];
extern const AccessMethod kTextMethods[];
extern const AccessMethod kActionMethods[];
extern const AccessMethod kPropertyMethods[];

/** Writes the whole tree, as the readers' cache wants it. */
void WriteItems(const AccessTree& tree, const AccessDesktop& desktop, AccessWriter& answer);

/** Writes a reference to the parent of an object. */
void WriteParent(const Accessible& object, const AccessDesktop& desktop, AccessWriter& answer);

/** The place of an object among its parent's children; -1 for the root. */
int IndexInParent(const AccessTree& tree, const Accessible& object);

/** Where an object is: on the screen, in its window, or in its parent. */
Eina_Rectangle AreaIn(const AccessCall& call, std::uint32_t coordinates);

} // namespace WatchPort

#endif
