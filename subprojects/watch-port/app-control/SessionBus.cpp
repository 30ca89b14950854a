#include "app-control/SessionBus.h"

#include <cstdlib>
#include <memory>
#include <sys/stat.h>

namespace
{
constexpr double kAnswerMilliseconds = 2000;

using Message = std::unique_ptr<Eldbus_Message, decltype(&eldbus_message_unref)>;

// Without this look, the bus library would start a bus of its own where there is none.
bool IsBusNamed()
{
    const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (address != nullptr && *address != '\0')
        return true;
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    struct stat status = {};
    return runtime != nullptr && stat((std::string(runtime) + "/bus").c_str(), &status) == 0 &&
           S_ISSOCK(status.st_mode);
}

Message Ask(Eldbus_Proxy* bus, Eldbus_Message* question)
{
    Message answer(eldbus_proxy_send_and_block(bus, question, kAnswerMilliseconds),
                   eldbus_message_unref);
    if (answer && eldbus_message_error_get(answer.get(), nullptr, nullptr))
        answer.reset();
    return answer;
}

std::optional<bool> HasOwner(Eldbus_Proxy* bus, const std::string& name)
{
    Eldbus_Message* question = eldbus_proxy_method_call_new(bus, "NameHasOwner");
    eldbus_message_arguments_append(question, "s", name.c_str());
    const Message answer = Ask(bus, question);
    Eina_Bool has = EINA_FALSE;
    if (!answer || !eldbus_message_arguments_get(answer.get(), "b", &has))
        return std::nullopt;
    return has != EINA_FALSE;
}

std::optional<bool> IsActivatable(Eldbus_Proxy* bus, const std::string& name)
{
    const Message answer = Ask(bus, eldbus_proxy_method_call_new(bus, "ListActivatableNames"));
    Eldbus_Message_Iter* names = nullptr;
    if (!answer || !eldbus_message_arguments_get(answer.get(), "as", &names))
        return std::nullopt;
    const char* candidate = nullptr;
    while (eldbus_message_iter_get_and_next(names, 's', &candidate))
    {
        if (name == candidate)
            return true;
    }
    return false;
}
} // namespace

SessionBus::SessionBus()
{
    eldbus_init();
    if (IsBusNamed())
        mConnection = eldbus_connection_get(ELDBUS_CONNECTION_TYPE_SESSION);
}

SessionBus::~SessionBus()
{
    if (mConnection != nullptr)
        eldbus_connection_unref(mConnection);
    eldbus_shutdown();
}

std::optional<bool> SessionBus::Knows(const std::string& name) const
{
    Eldbus_Object* object = eldbus_object_get(mConnection, ELDBUS_FDO_BUS, ELDBUS_FDO_PATH);
    Eldbus_Proxy* bus = eldbus_proxy_get(object, ELDBUS_FDO_INTERFACE);
    auto known = HasOwner(bus, name);
    if (known == false)
        known = IsActivatable(bus, name);
    eldbus_proxy_unref(bus);
    eldbus_object_unref(object);
    return known;
}
