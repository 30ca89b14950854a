#include "FailingCalls.h"
#include "MessageBus.h"
#include "bus/BusProperty.h"
#include "bus/Buses.h"

#include <Ecore.h>
#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <new>

using namespace WatchPort;

namespace
{
using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr char kName[] = "org.example.Service";
constexpr char kPath[] = "/org/example/Service";
constexpr char kInterface[] = "org.example.Interface";
constexpr char kProperties[] = "org.freedesktop.DBus.Properties";
constexpr BusPropertyAddress kLevel = {kName, kPath, kInterface, "Level", "u"};

void SPassAnswer(DBusPendingCall* call, void* data)
{
    *static_cast<bool*>(data) = !IsError(BusMessage(dbus_pending_call_steal_reply(call)));
}

class BusConnectionTest : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        ecore_app_no_system_modules();
        ecore_init();
        sBus = new MessageBus;
        setenv("DBUS_SYSTEM_BUS_ADDRESS", sBus->Address().c_str(), 1);
    }
    static void TearDownTestSuite()
    {
        delete sBus;
        ecore_shutdown();
    }
    void SetUp() override { ASSERT_TRUE(SystemBus()); }

    template <typename Condition> static void TurnUntil(Condition condition)
    {
        while (!condition())
            ecore_main_loop_iterate_may_block(1);
    }

    static void ExpectAnswer(BusConnection& bus)
    {
        bool isAnswered = false;
        const BusPending question =
            bus.Call(NewCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "GetId"),
                     seconds(25), SPassAnswer, &isAnswered);
        TurnUntil([&] { return isAnswered; });
    }

    static inline MessageBus* sBus = nullptr;
};

BusMessage NewIdQuestion()
{
    return NewCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "GetId");
}

/** Asks the bus itself something. */
class Listener : private BusListener
{
public:
    explicit Listener(BusConnection& bus)
        : BusListener(bus, {DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "Unheard"})
    {
        Ask(NewIdQuestion());
    }

    using BusListener::TakeAnswer;
    bool IsAnswered() const { return mIsAnswered; }

private:
    void OnAppeared() override {}
    void OnAnswer(DBusMessage*) override { mIsAnswered = true; }
    void OnSignal(DBusMessage*) override {}
    void OnGone() override {}

    bool mIsAnswered = false;
};

/** A service with a property, which the main loop serves. */
class Service
{
public:
    explicit Service(const MessageBus& bus) : mBus(bus.Connect())
    {
        const auto soon = BusConnection::Clock::now() + seconds(25);
        BusMessage question =
            NewCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "RequestName", {kName});
        const dbus_uint32_t flags = 0;
        dbus_message_append_args(question.get(), DBUS_TYPE_UINT32, &flags, DBUS_TYPE_INVALID);
        EXPECT_FALSE(IsError(mBus->Ask(std::move(question), soon)));
        mBus->FollowLoop();
        dbus_connection_add_filter(mBus->Get(), SMessageCB, this, nullptr);
    }
    ~Service() { dbus_connection_remove_filter(mBus->Get(), SMessageCB, this); }

    void Change(dbus_uint32_t level)
    {
        mLevel = level;
        Emit(true);
    }

    /** Has those who follow it ask for the value. */
    void Withdraw() { Emit(false); }

private:
    static DBusHandlerResult SMessageCB(DBusConnection*, DBusMessage* message, void* data)
    {
        auto* self = static_cast<Service*>(data);
        if (!dbus_message_is_method_call(message, kProperties, "Get"))
            return DBUS_HANDLER_RESULT_NOT_YET_HANDLED;
        BusMessage answer(dbus_message_new_method_return(message));
        DBusMessageIter iter;
        dbus_message_iter_init_append(answer.get(), &iter);
        self->AppendLevel(&iter);
        self->mBus->Post(std::move(answer));
        return DBUS_HANDLER_RESULT_HANDLED;
    }

    void AppendLevel(DBusMessageIter* iter) const
    {
        DBusMessageIter variant;
        dbus_message_iter_open_container(iter, DBUS_TYPE_VARIANT, "u", &variant);
        dbus_message_iter_append_basic(&variant, DBUS_TYPE_UINT32, &mLevel);
        dbus_message_iter_close_container(iter, &variant);
    }

    void Emit(bool isTold)
    {
        BusMessage signal(dbus_message_new_signal(kPath, kProperties, "PropertiesChanged"));
        DBusMessageIter iter;
        dbus_message_iter_init_append(signal.get(), &iter);
        AppendText(&iter, kInterface);
        DBusMessageIter changed;
        dbus_message_iter_open_container(&iter, DBUS_TYPE_ARRAY, "{sv}", &changed);
        if (isTold)
        {
            DBusMessageIter entry;
            dbus_message_iter_open_container(&changed, DBUS_TYPE_DICT_ENTRY, nullptr, &entry);
            AppendText(&entry, kLevel.property);
            AppendLevel(&entry);
            dbus_message_iter_close_container(&changed, &entry);
        }
        dbus_message_iter_close_container(&iter, &changed);
        DBusMessageIter withdrawn;
        dbus_message_iter_open_container(&iter, DBUS_TYPE_ARRAY, "s", &withdrawn);
        if (!isTold)
            AppendText(&withdrawn, kLevel.property);
        dbus_message_iter_close_container(&iter, &withdrawn);
        mBus->Post(std::move(signal));
    }

    std::unique_ptr<BusConnection> mBus;
    dbus_uint32_t mLevel = 1;
};

/** Listens to the bus itself, and throws what it hears. */
class ThrowingListener : private BusListener
{
public:
    explicit ThrowingListener(BusConnection& bus)
        : BusListener(bus, {DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "NameLost"})
    {
        Ask(NewCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "GetId"));
    }

private:
    void OnAppeared() override {}
    void OnAnswer(DBusMessage*) override { throw 7; }
    void OnSignal(DBusMessage*) override {}
    void OnGone() override {}
};

/** Counts the messages of a flood, slowly, and how many come between two frames at most. */
struct Flood
{
    static DBusHandlerResult SMessageCB(DBusConnection*, DBusMessage* message, void* data)
    {
        auto* self = static_cast<Flood*>(data);
        if (!dbus_message_is_signal(message, kInterface, "Flood"))
            return DBUS_HANDLER_RESULT_NOT_YET_HANDLED;
        usleep(5000);
        ++self->count;
        ++self->sinceFrame;
        self->most = std::max(self->most, self->sinceFrame);
        return DBUS_HANDLER_RESULT_HANDLED;
    }

    static Eina_Bool SFrameCB(void* data)
    {
        static_cast<Flood*>(data)->sinceFrame = 0;
        return ECORE_CALLBACK_RENEW;
    }

    int count = 0;
    int sinceFrame = 0;
    int most = 0;
};
} // namespace

TEST_F(BusConnectionTest, LetsTheLoopDrawBetweenTheMessagesOfAFlood)
{
    constexpr int kMessages = 100;
    Flood flood;
    const auto bus = sBus->Connect();
    dbus_connection_add_filter(bus->Get(), Flood::SMessageCB, &flood, nullptr);
    dbus_bus_add_match(bus->Get(), "type='signal',interface='org.example.Interface'", nullptr);
    for (int i = 0; i < kMessages; ++i)
        bus->Post(BusMessage(dbus_message_new_signal(kPath, kInterface, "Flood")));
    dbus_connection_flush(bus->Get());
    bus->FollowLoop();
    Ecore_Idle_Enterer* frames = ecore_idle_enterer_add(Flood::SFrameCB, &flood);
    TurnUntil([&] { return flood.count == kMessages; });
    ecore_idle_enterer_del(frames);
    dbus_connection_remove_filter(bus->Get(), Flood::SMessageCB, &flood);
    EXPECT_LE(flood.most, 2);
}

TEST_F(BusConnectionTest, IsLeftToTheLoopASecondTimeWhenTheFirstFailed)
{
    const auto bus = sBus->Connect();
    FailingCalls::FailNext("ecore_main_fd_handler_add");
    EXPECT_THROW(bus->FollowLoop(), std::bad_alloc);
    bus->FollowLoop();
    ExpectAnswer(*bus);
}

TEST_F(BusConnectionTest, LosesAMessageThatThereIsNoMemoryForAndHearsTheNext)
{
    Service service(*sBus);
    std::vector<dbus_uint32_t> levels;
    const auto property = BusProperty::Follow(
        kLevel,
        [&](DBusMessageIter* value) { dbus_message_iter_get_basic(value, &levels.emplace_back()); },
        [] {});
    TurnUntil([&] { return !levels.empty(); });
    testing::internal::CaptureStderr();
    service.Withdraw();
    FailingCalls::FailNext("dbus_message_new_method_call");
    TurnUntil([] { return !FailingCalls::IsToCome(); });
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                HasSubstr("E WATCH_PORT: a message of a bus is lost: out of memory"));
    service.Change(2);
    TurnUntil([&] { return levels.size() == 2; });
    EXPECT_THAT(levels, ElementsAre(1, 2));
}

// In a process of its own, for the loop has not returned from what was thrown.
TEST_F(BusConnectionTest, LetsAnExceptionOfTheApplicationThroughAndIsNotLocked)
{
    const auto listen = []
    {
        const auto bus = sBus->Connect();
        const ThrowingListener listener(*bus);
        EXPECT_THROW(TurnUntil([] { return false; }), int);
        bus->Post(NewCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "GetId"));
        while (dbus_connection_get_dispatch_status(bus->Get()) == DBUS_DISPATCH_COMPLETE)
            dbus_connection_read_write(bus->Get(), -1);
        dbus_connection_dispatch(bus->Get());
        std::_Exit(HasFailure());
    };
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(listen(), testing::ExitedWithCode(0), "");
}

TEST_F(BusConnectionTest, TakesAnAnswerThatHasComeAndNoOther)
{
    const auto bus = sBus->Connect();
    const auto other = sBus->Connect();
    const auto deadline = BusConnection::Clock::now() + seconds(25);
    sBus->Hold();
    Listener listener(*bus);
    listener.TakeAnswer();
    EXPECT_FALSE(listener.IsAnswered());
    sBus->Release();
    // The bus has answered the listener before these.
    for (int i = 0; i < 2; ++i)
        ASSERT_FALSE(IsError(other->Ask(NewIdQuestion(), deadline)));
    listener.TakeAnswer();
    EXPECT_TRUE(listener.IsAnswered());
}

TEST_F(BusConnectionTest, ReadsAPropertyWithinItsPatienceWhenTheBusStopsToRead)
{
    sBus->Hold();
    BusMessage much = NewCall(kName, kPath, kInterface, "Much", {std::string(100'000, 'm')});
    dbus_message_set_no_reply(much.get(), true);
    for (int i = 0; i < 50; ++i)
        SystemBus()->Post(BusMessage(dbus_message_copy(much.get())));
    const auto before = BusConnection::Clock::now();
    EXPECT_FALSE(BusProperty::Read(kLevel, milliseconds(300), [](DBusMessageIter*) {}));
    EXPECT_LT(BusConnection::Clock::now() - before, seconds(10));
    sBus->Release();
    ExpectAnswer(*SystemBus());
}

TEST_F(BusConnectionTest, EndsTheReadingOfAPropertyAtASignal)
{
    sBus->Hold();
    sigset_t termination;
    sigemptyset(&termination);
    sigaddset(&termination, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &termination, nullptr);
    raise(SIGTERM);
    const auto before = BusConnection::Clock::now();
    EXPECT_FALSE(BusProperty::Read(kLevel, seconds(30), [](DBusMessageIter*) {}));
    EXPECT_LT(BusConnection::Clock::now() - before, seconds(15));
    int signal = 0;
    sigwait(&termination, &signal);
    pthread_sigmask(SIG_UNBLOCK, &termination, nullptr);
    sBus->Release();
}

TEST_F(BusConnectionTest, ReadsAPropertyWithoutCallingAnybody)
{
    // The bus answers for a service that nobody serves: its connection is this process's own.
    bool isCalled = false;
    const auto property = BusProperty::Follow(
        kLevel, [&](DBusMessageIter*) { isCalled = true; }, [&] { isCalled = true; });
    EXPECT_FALSE(BusProperty::Read(kLevel, seconds(30), [](DBusMessageIter*) {}));
    EXPECT_FALSE(isCalled);
    TurnUntil([&] { return isCalled; });
}
