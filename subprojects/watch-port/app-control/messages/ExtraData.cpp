#include "app-control/messages/ExtraData.h"

#include "bus/BusMessage.h"

#include <string_view>

namespace WatchPort
{

namespace
{

constexpr size_t kMostBytes = size_t{1024} * 1024;

void AppendVariant(DBusMessageIter* entry, const std::string& value)
{
    DBusMessageIter variant;
    RequireMemory(dbus_message_iter_open_container(entry, DBUS_TYPE_VARIANT, "s", &variant));
    AppendText(&variant, value);
    RequireMemory(dbus_message_iter_close_container(entry, &variant));
}

template <typename AppendValue>
void AppendEntries(DBusMessageIter* iter, const char* type, const ExtraData& extraData,
                   AppendValue appendValue)
{
    DBusMessageIter entries;
    RequireMemory(dbus_message_iter_open_container(iter, DBUS_TYPE_ARRAY, type, &entries));
    for (const auto& [key, value] : extraData)
    {
        DBusMessageIter entry;
        RequireMemory(
            dbus_message_iter_open_container(&entries, DBUS_TYPE_DICT_ENTRY, nullptr, &entry));
        AppendText(&entry, key);
        appendValue(&entry, value);
        RequireMemory(dbus_message_iter_close_container(&entries, &entry));
    }
    RequireMemory(dbus_message_iter_close_container(iter, &entries));
}

// The text of an entry, within a variant or not; null for a value of another type.
const char* ReadValue(DBusMessageIter value)
{
    if (dbus_message_iter_get_arg_type(&value) == DBUS_TYPE_VARIANT)
        value = Enter(&value);
    return dbus_message_iter_get_arg_type(&value) == DBUS_TYPE_STRING ? ReadText(&value) : nullptr;
}
} // namespace

void AppendVariants(DBusMessageIter* iter, const ExtraData& extraData)
{
    AppendEntries(iter, "{sv}", extraData, AppendVariant);
}

void AppendTexts(DBusMessageIter* iter, const ExtraData& extraData)
{
    AppendEntries(iter, "{ss}", extraData, AppendText);
}

bool ReadExtraData(DBusMessageIter entries, ExtraData& extraData)
{
    size_t count = 0;
    size_t bytes = 0;
    while (dbus_message_iter_get_arg_type(&entries) == DBUS_TYPE_DICT_ENTRY)
    {
        DBusMessageIter entry = Enter(&entries);
        const std::string_view key = ReadText(&entry);
        const char* const text = ReadValue(entry);
        const std::string_view value = text ? text : "";
        bytes += key.size() + value.size();
        if (++count > kMostEntries || bytes > kMostBytes)
            return false;
        if (text && !key.empty())
            extraData[std::string(key)] = value;
    }
    return true;
}

size_t CountBytes(const ExtraData& extraData)
{
    size_t bytes = 0;
    for (const auto& [key, value] : extraData)
        bytes += key.size() + value.size();
    return bytes;
}

bool IsTooBig(const LaunchRequest& request)
{
    return request.operation.size() + CountBytes(request.extraData) > kMostBytes ||
           request.extraData.size() > kMostEntries;
}

} // namespace WatchPort
