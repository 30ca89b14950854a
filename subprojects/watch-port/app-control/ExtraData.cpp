#include "app-control/ExtraData.h"

#include "app-control/AppControl.h"
#include "support/BusSignature.h"

#include <cstdlib>
#include <cstring>

namespace
{
constexpr size_t kMostBytes = size_t{1024} * 1024;

void AppendVariant(Eldbus_Message_Iter* entry, const std::string& value)
{
    Eldbus_Message_Iter* variant = eldbus_message_iter_container_new(entry, 'v', "s");
    eldbus_message_iter_basic_append(variant, 's', value.c_str());
    eldbus_message_iter_container_close(entry, variant);
}

void AppendText(Eldbus_Message_Iter* entry, const std::string& value)
{
    eldbus_message_iter_basic_append(entry, 's', value.c_str());
}

template <typename AppendValue>
void AppendEntries(Eldbus_Message_Iter* iter, const char* type, const ExtraData& extraData,
                   AppendValue appendValue)
{
    Eldbus_Message_Iter* entries = eldbus_message_iter_container_new(iter, 'a', type);
    for (const auto& [key, value] : extraData)
    {
        Eldbus_Message_Iter* entry = eldbus_message_iter_container_new(entries, 'e', nullptr);
        eldbus_message_iter_basic_append(entry, 's', key.c_str());
        appendValue(entry, value);
        eldbus_message_iter_container_close(entries, entry);
    }
    eldbus_message_iter_container_close(iter, entries);
}

void Store(ExtraData& extraData, const char* key, const char* value)
{
    if (*key != '\0')
        extraData[key] = value;
}
} // namespace

void AppendVariants(Eldbus_Message_Iter* iter, const ExtraData& extraData)
{
    AppendEntries(iter, "{sv}", extraData, AppendVariant);
}

void AppendTexts(Eldbus_Message_Iter* iter, const ExtraData& extraData)
{
    AppendEntries(iter, "{ss}", extraData, AppendText);
}

ExtraData ReadVariants(Eldbus_Message_Iter* entries)
{
    ExtraData extraData;
    Eldbus_Message_Iter* entry = nullptr;
    while (eldbus_message_iter_get_and_next(entries, 'e', &entry))
    {
        const char* key = nullptr;
        const char* value = nullptr;
        Eldbus_Message_Iter* variant = nullptr;
        if (eldbus_message_iter_arguments_get(entry, "sv", &key, &variant) &&
            HasSignature(variant, "s") && eldbus_message_iter_arguments_get(variant, "s", &value))
            Store(extraData, key, value);
    }
    return extraData;
}

ExtraData ReadTexts(Eldbus_Message_Iter* entries)
{
    ExtraData extraData;
    Eldbus_Message_Iter* entry = nullptr;
    while (eldbus_message_iter_get_and_next(entries, 'e', &entry))
    {
        const char* key = nullptr;
        const char* value = nullptr;
        if (eldbus_message_iter_arguments_get(entry, "ss", &key, &value))
            Store(extraData, key, value);
    }
    return extraData;
}

bool IsTooBig(const app_control_s& request)
{
    size_t bytes = request.operation.size();
    for (const auto& [key, value] : request.extraData)
        bytes += key.size() + value.size();
    return bytes > kMostBytes;
}
