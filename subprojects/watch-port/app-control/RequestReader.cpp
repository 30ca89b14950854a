#include "app-control/RequestReader.h"

#include "app-control/ExtraData.h"
#include "support/BusSignature.h"

namespace
{
// As text/uri-list has it, one a line: extra data hold one text for each key.
std::string JoinLines(Eldbus_Message_Iter* texts)
{
    std::string lines;
    const char* text = nullptr;
    while (eldbus_message_iter_get_and_next(texts, 's', &text))
        lines += (lines.empty() ? "" : "\n") + std::string(text);
    return lines;
}

// The only parameter of an action, or none, as the extra data; false for any other.
bool ReadParameter(Eldbus_Message_Iter* parameters, ExtraData& extraData)
{
    Eldbus_Message_Iter* parameter = nullptr;
    if (!eldbus_message_iter_get_and_next(parameters, 'v', &parameter))
        return true;
    Eldbus_Message_Iter* entries = nullptr;
    Eldbus_Message_Iter* second = nullptr;
    if (!HasSignature(parameter, "a{sv}") ||
        !eldbus_message_iter_arguments_get(parameter, "a{sv}", &entries))
        return false;
    extraData = ReadVariants(entries);
    return !eldbus_message_iter_get_and_next(parameters, 'v', &second);
}
} // namespace

std::unique_ptr<app_control_s> RequestReader::ReadActivate(const Eldbus_Message* call)
{
    return HasSignature(call, "a{sv}") ? std::make_unique<app_control_s>() : nullptr;
}

std::unique_ptr<app_control_s> RequestReader::ReadOpen(const Eldbus_Message* call)
{
    Eldbus_Message_Iter* uris = nullptr;
    Eldbus_Message_Iter* platformData = nullptr;
    if (!HasSignature(call, "asa{sv}") ||
        !eldbus_message_arguments_get(call, "asa{sv}", &uris, &platformData))
        return nullptr;
    auto request = std::make_unique<app_control_s>();
    request->operation = "open";
    request->extraData["uris"] = JoinLines(uris);
    return request;
}

std::unique_ptr<app_control_s> RequestReader::ReadAction(const Eldbus_Message* call)
{
    const char* action = nullptr;
    Eldbus_Message_Iter* parameters = nullptr;
    Eldbus_Message_Iter* platformData = nullptr;
    auto request = std::make_unique<app_control_s>();
    if (!HasSignature(call, "sava{sv}") ||
        !eldbus_message_arguments_get(call, "sava{sv}", &action, &parameters, &platformData) ||
        !ReadParameter(parameters, request->extraData))
        return nullptr;
    request->operation = action;
    return request;
}

std::unique_ptr<app_control_s> RequestReader::ReadLaunch(const Eldbus_Message* call)
{
    const char* operation = nullptr;
    Eldbus_Message_Iter* entries = nullptr;
    if (!HasSignature(call, "sa{ss}") ||
        !eldbus_message_arguments_get(call, "sa{ss}", &operation, &entries))
        return nullptr;
    auto request = std::make_unique<app_control_s>();
    request->operation = operation;
    request->extraData = ReadTexts(entries);
    return request;
}
