#include "common/ControlClient.h"

#include "common/Complaint.h"

#include <Ecore.h>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <utility>
#include <variant>
#include <vector>

namespace
{
constexpr char kName[] = "com.velmora.QivoWatch";
constexpr char kPath[] = "/com/velmora/QivoWatch";
constexpr char kInterface[] = "com.velmora.QivoWatch1";
constexpr char kProperties[] = "org.freedesktop.DBus.Properties";
// The keeper accepts no more at a time.
constexpr int kMostDetents = 1000;

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

// A connection of its own: when the toolkit's own session bus dies, the process ends with an error.
Eldbus_Connection* Connect()
{
    const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (!address)
        throw std::runtime_error("DBUS_SESSION_BUS_ADDRESS is not set");
    Eldbus_Connection* bus = eldbus_address_connection_get(address);
    if (!bus)
        throw std::runtime_error(std::string("no bus at ") + address);
    return bus;
}

// What a verb takes beside the arguments that it needs.
using CallOptions = std::vector<std::pair<const char*, std::variant<uint32_t, const char*>>>;

void AppendOptions(Eldbus_Message_Iter* arguments, const CallOptions& options)
{
    Eldbus_Message_Iter* all = eldbus_message_iter_container_new(arguments, 'a', "{sv}");
    for (const auto& [name, value] : options)
    {
        const auto* number = std::get_if<uint32_t>(&value);
        const char* type = number ? "u" : "s";
        Eldbus_Message_Iter* entry = eldbus_message_iter_container_new(all, 'e', nullptr);
        eldbus_message_iter_basic_append(entry, 's', name);
        Eldbus_Message_Iter* variant = eldbus_message_iter_container_new(entry, 'v', type);
        if (number)
            eldbus_message_iter_basic_append(variant, 'u', *number);
        else
            eldbus_message_iter_basic_append(variant, 's', std::get<const char*>(value));
        eldbus_message_iter_container_close(entry, variant);
        eldbus_message_iter_container_close(all, entry);
    }
    eldbus_message_iter_container_close(arguments, all);
}

// Whether this is the end of the connection and not an answer.
bool IsCanceled(const Eldbus_Message* answer)
{
    const char* name = nullptr;
    return eldbus_message_error_get(answer, &name, nullptr) &&
           std::strcmp(name, ELDBUS_ERROR_PENDING_CANCELED) == 0;
}

// The text of an error; null for an answer and for the end of the connection, which is reported
// once.
const char* ErrorText(const Eldbus_Message* answer)
{
    const char* text = nullptr;
    const bool isError = eldbus_message_error_get(answer, nullptr, &text);
    return isError && !IsCanceled(answer) ? text : nullptr;
}

template <typename Type> Type Read(Eldbus_Message_Iter* value, const char* signature)
{
    Type read{};
    eldbus_message_iter_arguments_get(value, signature, &read);
    return read;
}

// The bus's booleans take four bytes, whatever the toolkit's type takes.
bool ReadFlag(Eldbus_Message_Iter* value)
{
    return Read<uint32_t>(value, "b") != 0;
}

std::vector<InstalledApp> ReadApps(Eldbus_Message_Iter* value)
{
    std::vector<InstalledApp> apps;
    Eldbus_Message_Iter* all = nullptr;
    Eldbus_Message_Iter* one = nullptr;
    if (!eldbus_message_iter_arguments_get(value, "a(sss)", &all))
        return apps;
    while (eldbus_message_iter_get_and_next(all, 'r', &one))
    {
        const char* id = nullptr;
        const char* name = nullptr;
        const char* icon = nullptr;
        if (eldbus_message_iter_arguments_get(one, "sss", &id, &name, &icon))
            apps.push_back({id, name, icon});
    }
    return apps;
}
} // namespace

const std::map<std::string, ControlClient::Property>& ControlClient::Properties()
{
    using State = WatchState;
    using Value = Eldbus_Message_Iter*;
    static const std::map<std::string, Property> sProperties = {
        {"ScreenOn", {"b", [](State& state, Value v) { state.isScreenOn = ReadFlag(v); }}},
        {"BezelPosition",
         {"i", [](State& state, Value v) { state.bezelPosition = Read<int>(v, "i"); }}},
        {"BackPressed", {"b", [](State& state, Value v) { state.isBackPressed = ReadFlag(v); }}},
        {"PowerPressed", {"b", [](State& state, Value v) { state.isPowerPressed = ReadFlag(v); }}},
        {"Plugged", {"b", [](State& state, Value v) { state.isPlugged = ReadFlag(v); }}},
        {"Charging", {"b", [](State& state, Value v) { state.isCharging = ReadFlag(v); }}},
        {"Percentage",
         {"d", [](State& state, Value v) { state.percentage = Read<double>(v, "d"); }}},
        {"Time", {"x", [](State& state, Value v) { state.time = Read<int64_t>(v, "x"); }}},
        {"TimeFrozen", {"b", [](State& state, Value v) { state.isTimeFrozen = ReadFlag(v); }}},
        {"TextSize", {"d", [](State& state, Value v) { state.textSize = Read<double>(v, "d"); }}},
        {"MotionReduced",
         {"b", [](State& state, Value v) { state.isMotionReduced = ReadFlag(v); }}},
        {"ContrastHigh", {"b", [](State& state, Value v) { state.isContrastHigh = ReadFlag(v); }}},
        {"Apps", {"a(sss)", [](State& state, Value v) { state.apps = ReadApps(v); }}},
        {"Zone", {"s", [](State& state, Value v) { state.zone = Read<const char*>(v, "s"); }}},
    };
    return sProperties;
}

ControlClient::ControlClient(StateCallback onState)
    : mBus((eldbus_init(), Connect())), mOnState(std::move(onState))
{
    eldbus_connection_event_callback_add(mBus, ELDBUS_CONNECTION_EVENT_DISCONNECTED,
                                         SDisconnectedCB, this);
    eldbus_signal_handler_add(mBus, kName, kPath, kProperties, "PropertiesChanged", SChangedCB,
                              this);
    eldbus_name_owner_changed_callback_add(mBus, kName, SOwnerChangedCB, this, EINA_TRUE);
}

ControlClient::~ControlClient()
{
    eldbus_connection_unref(mBus);
    eldbus_shutdown();
}

void ControlClient::OwnName(const char* name)
{
    eldbus_name_request(mBus, name, ELDBUS_NAME_REQUEST_FLAG_DO_NOT_QUEUE, SNameCB, this);
}

Eldbus_Message* ControlClient::NewCall(const char* method) const
{
    return eldbus_message_method_call_new(kName, kPath, kInterface, method);
}

// The method's name travels with the call, for the message if it fails.
void ControlClient::Send(Eldbus_Message* call)
{
    const char* method = eina_stringshare_add(eldbus_message_member_get(call));
    eldbus_connection_send(mBus, call, SAnswerCB, method, -1);
}

void ControlClient::TurnBezel(int detents)
{
    if (detents == 0)
        return;
    const bool isSameWay = !mTurns.empty() && (mTurns.back() > 0) == (detents > 0);
    if (isSameWay && std::abs(mTurns.back() + detents) <= kMostDetents)
        mTurns.back() += detents;
    else
        mTurns.push_back(detents);
    if (mTurnsAtWork == 0)
        SendTurn();
}

void ControlClient::SendTurn()
{
    const int detents = mTurns.front();
    mTurns.pop_front();
    ++mTurnsAtWork;
    Eldbus_Message* call = NewCall("Bezel");
    Eldbus_Message_Iter* arguments = eldbus_message_iter_get(call);
    eldbus_message_iter_basic_append(arguments, 's', detents > 0 ? "cw" : "ccw");
    AppendOptions(arguments,
                  {{"count", static_cast<uint32_t>(std::abs(detents))}, {"interval", 0U}});
    eldbus_connection_send(mBus, call, STurnedCB, this, -1);
}

// Detents turned before the key moves are sent before it.
void ControlClient::MoveKey(const char* method, const char* key)
{
    while (!mTurns.empty())
        SendTurn();
    Eldbus_Message* call = NewCall(method);
    eldbus_message_arguments_append(call, "s", key);
    Send(call);
}

void ControlClient::PushKey(const char* key)
{
    MoveKey("PushKey", key);
}

void ControlClient::ReleaseKey(const char* key)
{
    MoveKey("ReleaseKey", key);
}

void ControlClient::SetPlugged(bool isPlugged)
{
    Eldbus_Message* call = NewCall("SetBattery");
    AppendOptions(eldbus_message_iter_get(call),
                  {{"state", isPlugged ? "charging" : "discharging"}});
    Send(call);
}

void ControlClient::Launch(const char* application)
{
    Eldbus_Message* call = NewCall("Launch");
    AppendOptions(eldbus_message_iter_get(call), {{"app", application}});
    Send(call);
}

void ControlClient::Stop()
{
    Send(NewCall("Stop"));
}

void ControlClient::ReadState()
{
    Eldbus_Message* question = eldbus_message_method_call_new(kName, kPath, kProperties, "GetAll");
    eldbus_message_arguments_append(question, "s", kInterface);
    eldbus_connection_send(mBus, question, SStateCB, this, -1);
}

void ControlClient::TakeProperties(Eldbus_Message_Iter* values)
{
    bool isTimeTold = false;
    Eldbus_Message_Iter* entry = nullptr;
    while (eldbus_message_iter_get_and_next(values, 'e', &entry))
    {
        const char* name = nullptr;
        Eldbus_Message_Iter* value = nullptr;
        if (!eldbus_message_iter_arguments_get(entry, "sv", &name, &value))
            continue;
        const auto property = Properties().find(name);
        if (property == Properties().end() || !HasSignature(value, property->second.mSignature))
            continue;
        property->second.mSet(mState, value);
        isTimeTold = isTimeTold || property->first == "Time";
    }
    mOnState(mState, isTimeTold);
}

void ControlClient::SOwnerChangedCB(void* data, const char* /*name*/, const char* before,
                                    const char* now)
{
    auto* client = static_cast<ControlClient*>(data);
    client->mIsWatchGone = !*now && *before;
    if (*now)
        client->ReadState();
    else if (client->mIsWatchGone)
        ecore_main_loop_quit();
}

void ControlClient::SDisconnectedCB(void* /*data*/, Eldbus_Connection* /*bus*/, void* /*event*/)
{
    Complain("the bus has gone");
    ecore_main_loop_quit();
}

void ControlClient::SStateCB(void* data, const Eldbus_Message* answer, Eldbus_Pending* /*pending*/)
{
    auto* client = static_cast<ControlClient*>(data);
    // A watch that ends before it answers has no state.
    if (client->mIsWatchGone)
        return;
    Eldbus_Message_Iter* values = nullptr;
    if (const char* text = ErrorText(answer))
    {
        Complain(std::string("the watch's state cannot be read: ") + text);
        client->mOnState(client->mState, false);
    }
    else if (HasSignature(answer, "a{sv}") &&
             eldbus_message_arguments_get(answer, "a{sv}", &values))
        client->TakeProperties(values);
}

void ControlClient::SChangedCB(void* data, const Eldbus_Message* signal)
{
    const char* interface = nullptr;
    Eldbus_Message_Iter* changed = nullptr;
    Eldbus_Message_Iter* invalidated = nullptr;
    if (HasSignature(signal, "sa{sv}as") &&
        eldbus_message_arguments_get(signal, "sa{sv}as", &interface, &changed, &invalidated) &&
        std::strcmp(interface, kInterface) == 0)
        static_cast<ControlClient*>(data)->TakeProperties(changed);
}

void ControlClient::STurnedCB(void* data, const Eldbus_Message* answer, Eldbus_Pending* /*pending*/)
{
    auto* client = static_cast<ControlClient*>(data);
    if (const char* text = ErrorText(answer))
        Complain(std::string("Bezel: ") + text);
    --client->mTurnsAtWork;
    if (client->mTurnsAtWork == 0 && !client->mTurns.empty() && !IsCanceled(answer))
        client->SendTurn();
}

void ControlClient::SAnswerCB(void* data, const Eldbus_Message* answer, Eldbus_Pending* /*pending*/)
{
    const char* method = static_cast<const char*>(data);
    if (const char* text = ErrorText(answer))
        Complain(std::string(method) + ": " + text);
    eina_stringshare_del(method);
}

void ControlClient::SNameCB(void* /*data*/, const Eldbus_Message* answer,
                            Eldbus_Pending* /*pending*/)
{
    unsigned int result = 0;
    const char* text = ErrorText(answer);
    if (HasSignature(answer, "u") && eldbus_message_arguments_get(answer, "u", &result) &&
        result != ELDBUS_NAME_REQUEST_REPLY_PRIMARY_OWNER)
        text = "another one is running on this bus";
    if (!text)
        return;
    Complain(text);
    ecore_main_loop_quit();
}
