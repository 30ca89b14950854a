#include "app-control/LaunchBus.h"

#include "app-control/ExtraData.h"
#include "support/BusSignature.h"
#include "support/Buses.h"
#include "support/QuietLog.h"

namespace
{
constexpr double kPatience = 1000;
constexpr uint32_t kDoNotQueue = 4;
constexpr uint32_t kPrimaryOwner = 1;
constexpr uint32_t kAlreadyOwner = 4;

NameAnswer ReadAnswer(const Eldbus_Message* answer)
{
    uint32_t code = 0;
    if (eldbus_message_error_get(answer, nullptr, nullptr) || !HasSignature(answer, "u") ||
        !eldbus_message_arguments_get(answer, "u", &code))
        return NameAnswer::NoAnswer;
    return code == kPrimaryOwner || code == kAlreadyOwner ? NameAnswer::Owned : NameAnswer::Taken;
}
} // namespace

LaunchBus::LaunchBus() : mConnection(SessionBus())
{
}

NameAnswer LaunchBus::RequestName(const std::string& name) const
{
    Eldbus_Message* call = eldbus_message_method_call_new(ELDBUS_FDO_BUS, ELDBUS_FDO_PATH,
                                                          ELDBUS_FDO_INTERFACE, "RequestName");
    eldbus_message_arguments_append(call, "su", name.c_str(), kDoNotQueue);
    Eldbus_Message* answer =
        Call(ELDBUS_FDO_BUS, ELDBUS_FDO_PATH, ELDBUS_FDO_INTERFACE, call, kPatience);
    if (answer == nullptr)
        return NameAnswer::NoAnswer;
    const NameAnswer read = ReadAnswer(answer);
    eldbus_message_unref(answer);
    return read;
}

Eldbus_Message* LaunchBus::Call(const std::string& name, const std::string& path,
                                const char* interface, Eldbus_Message* call, double timeout) const
{
    const QuietLog quiet("eldbus");
    Eldbus_Object* object = eldbus_object_get(mConnection, name.c_str(), path.c_str());
    Eldbus_Proxy* proxy = eldbus_proxy_get(object, interface);
    Eldbus_Message* answer = eldbus_proxy_send_and_block(proxy, call, timeout);
    eldbus_proxy_unref(proxy);
    eldbus_object_unref(object);
    return answer;
}
