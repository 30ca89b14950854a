#include "application/access/AccessBus.h"

#include "application/access/AccessNews.h"

#include <charconv>
#include <cstring>
#include <string_view>
#include <utility>

namespace WatchPort
{

namespace
{
constexpr char kRegistry[] = "org.a11y.atspi.Registry";
constexpr char kRegistryPath[] = "/org/a11y/atspi/registry";
constexpr char kSocket[] = "org.a11y.atspi.Socket";
constexpr char kCache[] = "org.a11y.atspi.Cache";
constexpr char kTreePath[] = "/org/a11y/atspi";
constexpr char kCachePath[] = "/org/a11y/atspi/cache";

BusMessage NewRefusal(DBusMessage* call, const char* error, const char* reason)
{
    BusMessage refusal(dbus_message_new_error(call, error, reason));
    RequireMemory(refusal != nullptr);
    return refusal;
}

const AccessMethod* FindMethodOf(DBusMessage* call)
{
    for (const AccessMethod* methods :
         {kObjectMethods, kPropertyMethods, kComponentMethods, kTextMethods, kActionMethods})
        for (; methods->member; ++methods)
            if (dbus_message_is_method_call(call, methods->interface, methods->member))
                return methods;
    return nullptr;
}

const Accessible* FindByPath(const AccessTree& tree, std::string_view path)
{
    const std::string root = AccessPath(AccessTree::kRoot);
    if (path == root)
        return tree.Find(AccessTree::kRoot);
    const std::string_view prefix = std::string_view(root).substr(0, root.rfind('/') + 1);
    if (path.substr(0, prefix.size()) != prefix)
        return nullptr;
    path.remove_prefix(prefix.size());
    unsigned id = 0;
    const auto [end, error] = std::from_chars(path.data(), path.data() + path.size(), id);
    const bool isWhole = error == std::errc() && end == path.data() + path.size();
    return isWhole && id != AccessTree::kRoot ? tree.Find(id) : nullptr;
}

bool IsOfBus(const char* interface)
{
    return std::strncmp(interface, "org.freedesktop.DBus.", 21) == 0;
}
} // namespace

AccessBus::AccessBus(BusConnection& bus, const Display& display)
    : BusListener(bus, {kRegistry, kRegistryPath, kRegistry, "EventListenerRegistered"}),
      mReaders(bus), mTree(display)
{
    static const DBusObjectPathVTable kTable = {nullptr, SCallCB, nullptr,
                                                nullptr, nullptr, nullptr};
    // What calls the object comes last: without memory there is none.
    Embed();
    RequireMemory(dbus_connection_register_fallback(mReaders.Get(), kTreePath, &kTable, this));
    mIdleEnterer = ecore_idle_enterer_add(SIdleEntererCB, this);
}

AccessBus::~AccessBus()
{
    ecore_idle_enterer_del(mIdleEnterer);
    dbus_connection_unregister_object_path(mReaders.Get(), kTreePath);
}

void AccessBus::Embed()
{
    BusMessage call = NewCall(kRegistry, AccessPath(AccessTree::kRoot), kSocket, "Embed");
    AccessWriter(call.get(), dbus_bus_get_unique_name(mReaders.Get()))
        .AddReference(AccessTree::kRoot);
    Ask(std::move(call));
}

// The first call has started it.
void AccessBus::OnAppeared()
{
    if (IsAsking())
        return;
    mTold.clear();
    Embed();
}

void AccessBus::OnAnswer(DBusMessage* answer)
{
    DBusMessageIter iter;
    if (!dbus_message_has_signature(answer, "(so)") || !dbus_message_iter_init(answer, &iter))
        return;
    DBusMessageIter desktop = Enter(&iter);
    mDesktop.bus = ReadText(&desktop);
    mDesktop.path = ReadText(&desktop);
    mIsEmbedded = true;
}

void AccessBus::OnSignal(DBusMessage*)
{
}

void AccessBus::OnGone()
{
    mDesktop = {};
    mIsEmbedded = false;
}

Eina_Bool AccessBus::SIdleEntererCB(void* data)
{
    auto* self = static_cast<AccessBus*>(data);
    self->mReaders.WithinCallback([self] { self->Update(); });
    return ECORE_CALLBACK_RENEW;
}

void AccessBus::Update()
{
    mTree.Update();
    if (!mIsEmbedded)
        return;
    TellNews(mTold, mTree.All(), dbus_bus_get_unique_name(mReaders.Get()),
             [this](BusMessage signal) { mReaders.Post(std::move(signal)); });
    mTold = mTree.All();
}

DBusHandlerResult AccessBus::SCallCB(DBusConnection*, DBusMessage* message, void* data)
{
    if (dbus_message_get_type(message) != DBUS_MESSAGE_TYPE_METHOD_CALL)
        return DBUS_HANDLER_RESULT_NOT_YET_HANDLED;
    auto* self = static_cast<AccessBus*>(data);
    self->mReaders.WithinCallback(
        [self, message]
        {
            BusMessage answer = self->Answer(message);
            if (!dbus_message_get_no_reply(message))
                self->mReaders.Post(std::move(answer));
        });
    return DBUS_HANDLER_RESULT_HANDLED;
}

BusMessage AccessBus::Answer(DBusMessage* call)
{
    // What was drawn may have been deleted since.
    Update();
    if (dbus_message_is_method_call(call, kCache, "GetItems") &&
        dbus_message_has_path(call, kCachePath))
    {
        BusMessage answer(dbus_message_new_method_return(call));
        RequireMemory(answer != nullptr);
        AccessWriter writer(answer.get(), dbus_bus_get_unique_name(mReaders.Get()));
        WriteItems(mTree, mDesktop, writer);
        return answer;
    }
    const Accessible* const object = FindByPath(mTree, dbus_message_get_path(call));
    return object ? AnswerFor(call, *object)
                  : NewRefusal(call, DBUS_ERROR_UNKNOWN_OBJECT, "no such object, or no more");
}

BusMessage AccessBus::AnswerFor(DBusMessage* call, const Accessible& object)
{
    const AccessMethod* const method = FindMethodOf(call);
    if (!method || (!IsOfBus(method->interface) && !HasInterface(object, method->interface)))
        return NewRefusal(call, DBUS_ERROR_UNKNOWN_METHOD, "no such method of this object");
    if (!method->run)
        return NewRefusal(call, DBUS_ERROR_PROPERTY_READ_ONLY, "no reader sets a property");
    BusMessage answer(dbus_message_new_method_return(call));
    RequireMemory(answer != nullptr);
    AccessWriter writer(answer.get(), dbus_bus_get_unique_name(mReaders.Get()));
    if (!method->run({mTree, mDesktop, object, call, writer}))
        return NewRefusal(call, DBUS_ERROR_INVALID_ARGS, "not the arguments of this method");
    return answer;
}

} // namespace WatchPort
