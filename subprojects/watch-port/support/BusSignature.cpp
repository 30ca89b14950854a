#include "support/BusSignature.h"

#include <cstdlib>
#include <cstring>

bool HasSignature(const Eldbus_Message* message, const char* signature)
{
    return std::strcmp(eldbus_message_signature_get(message), signature) == 0;
}

bool HasSignature(Eldbus_Message_Iter* value, const char* signature)
{
    char* actual = eldbus_message_iter_signature_get(value);
    const bool isEqual = actual && std::strcmp(actual, signature) == 0;
    std::free(actual);
    return isEqual;
}

Eldbus_Message_Iter* GetVariant(const Eldbus_Message* answer)
{
    Eldbus_Message_Iter* value = nullptr;
    if (eldbus_message_error_get(answer, nullptr, nullptr) || !HasSignature(answer, "v") ||
        !eldbus_message_arguments_get(answer, "v", &value))
        return nullptr;
    return value;
}
