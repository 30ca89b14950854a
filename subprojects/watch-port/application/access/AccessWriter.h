#ifndef WATCH_PORT_APPLICATION_ACCESS_ACCESS_WRITER_H
#define WATCH_PORT_APPLICATION_ACCESS_ACCESS_WRITER_H

#include "bus/BusMessage.h"

#include <cstdint>
#include <string>

namespace WatchPort
{

/** Appends values to a message. Throws std::bad_alloc without memory. */
class AccessWriter
{
public:
    /** @param bus The unique name of the process on the readers' bus; it outlives the object. */
    AccessWriter(DBusMessage* message, const char* bus);

    /** @param text A byte that is not UTF-8 is written as U+FFFD. */
    void AddText(const std::string& text);
    void AddNumber(std::int32_t number) { Add(DBUS_TYPE_INT32, &number); }
    void AddUnsigned(std::uint32_t number) { Add(DBUS_TYPE_UINT32, &number); }
    void AddTruth(bool isTrue);

    /** A reference "(so)" to an object of this process. */
    void AddReference(unsigned id);

    /** A reference to a foreign object; without a name the one to nothing. */
    void AddReference(const std::string& bus, const std::string& path);

    /** @param fill Called with a writer of what is inside. */
    template <typename Fill> void AddArray(const char* signature, Fill fill)
    {
        AddContainer(DBUS_TYPE_ARRAY, signature, fill);
    }
    template <typename Fill> void AddStruct(Fill fill)
    {
        AddContainer(DBUS_TYPE_STRUCT, nullptr, fill);
    }
    template <typename Fill> void AddEntry(Fill fill)
    {
        AddContainer(DBUS_TYPE_DICT_ENTRY, nullptr, fill);
    }
    template <typename Fill> void AddVariant(const char* signature, Fill fill)
    {
        AddContainer(DBUS_TYPE_VARIANT, signature, fill);
    }

private:
    AccessWriter(DBusMessageIter iter, const char* bus) : mIter(iter), mBus(bus) {}

    template <typename Fill> void AddContainer(int type, const char* signature, Fill fill)
    {
        DBusMessageIter inside;
        RequireMemory(dbus_message_iter_open_container(&mIter, type, signature, &inside));
        AccessWriter writer(inside, mBus);
        fill(writer);
        RequireMemory(dbus_message_iter_close_container(&mIter, &writer.mIter));
    }
    void Add(int type, const void* value);

    DBusMessageIter mIter{};
    const char* const mBus;
};

/** The path of an object of the tree. */
std::string AccessPath(unsigned id);

} // namespace WatchPort

#endif
