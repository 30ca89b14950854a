#include "app-control/LaunchInbox.h"
#include "app-control/messages/RequestWriter.h"
#include "port/bus/FailingCalls.h"
#include "port/bus/MessageBus.h"

#include <Ecore.h>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace WatchPort;

namespace
{
using std::chrono::seconds;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr char kId[] = "org.example.Clock";
constexpr char kOtherId[] = "org.example.Other";

void SKeepAnswer(DBusPendingCall* call, void* data)
{
    static_cast<BusMessage*>(data)->reset(dbus_pending_call_steal_reply(call));
}

/** An application's inbox, and a client that calls it. */
class LaunchMemory : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        ecore_app_no_system_modules();
        ecore_init();
        sBus = new MessageBus;
        setenv("DBUS_SESSION_BUS_ADDRESS", sBus->Address().c_str(), 1);
    }
    static void TearDownTestSuite()
    {
        delete sBus;
        ecore_shutdown();
    }
    void SetUp() override
    {
        Own(*mReceiver, kId);
        Own(*mSender, kOtherId);
        mReceiver->FollowLoop();
        mSender->FollowLoop();
        mRequest.appId = kId;
    }

    static void Own(BusConnection& bus, const char* name)
    {
        BusMessage question =
            NewCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "RequestName", {name});
        // The test before may not yet have left the bus.
        const dbus_uint32_t flags =
            DBUS_NAME_FLAG_ALLOW_REPLACEMENT | DBUS_NAME_FLAG_REPLACE_EXISTING;
        dbus_message_append_args(question.get(), DBUS_TYPE_UINT32, &flags, DBUS_TYPE_INVALID);
        const auto soon = BusConnection::Clock::now() + seconds(25);
        ASSERT_FALSE(IsError(bus.Ask(std::move(question), soon)));
    }

    template <typename Condition> static void TurnUntil(Condition condition)
    {
        while (!condition())
            ecore_main_loop_iterate_may_block(1);
    }

    void Send(BusMessage call)
    {
        mCall = mSender->Call(std::move(call), seconds(25), SKeepAnswer, &mAnswer);
        TurnUntil([this] { return !mInbox.IsEmpty(); });
    }

    std::unique_ptr<BusConnection> mReceiver = sBus->Connect();
    std::unique_ptr<BusConnection> mSender = sBus->Connect();
    LaunchInbox mInbox{*mReceiver, kId};
    LaunchRequest mRequest;
    BusMessage mAnswer;
    BusPending mCall;

    static inline MessageBus* sBus = nullptr;
};
} // namespace

TEST_F(LaunchMemory, ThatAReplyLackedLeavesItToBeSentAgain)
{
    Send(RequestWriter::WriteLaunch(mRequest));
    mInbox.HandOver(
        [](app_control_h request)
        {
            LaunchRequest reply;
            reply.extraData["key"] = "value";
            FailingCalls::FailNext("dbus_message_iter_open_container");
            EXPECT_EQ(
                app_control_reply_to_launch_request(&reply, request, APP_CONTROL_RESULT_SUCCEEDED),
                APP_CONTROL_ERROR_OUT_OF_MEMORY);
            EXPECT_EQ(
                app_control_reply_to_launch_request(&reply, request, APP_CONTROL_RESULT_SUCCEEDED),
                APP_CONTROL_ERROR_NONE);
        });
    TurnUntil([this] { return mAnswer != nullptr; });
    EXPECT_STREQ(dbus_message_get_signature(mAnswer.get()), "ia{ss}");
}

TEST_F(LaunchMemory, ThatAReceiptLackedIsOneLine)
{
    Send(RequestWriter::WriteForDesktop(mRequest));
    testing::internal::CaptureStderr();
    EXPECT_NO_THROW(
        mInbox.HandOver([](app_control_h) { FailingCalls::FailNext("dbus_connection_send"); }));
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                HasSubstr("the sender of a launch request gets no answer: out of memory"));
    EXPECT_TRUE(mInbox.IsEmpty());
}

TEST_F(LaunchMemory, ThatTheSecondWayLackedIsAFailureThatIsTold)
{
    // A client that has no object answers that the method is unknown, as the desktop's own do.
    app_control_h request = nullptr;
    app_control_create(&request);
    app_control_set_app_id(request, kOtherId);
    std::vector<int> results;
    const auto tell = [](app_control_h, app_control_h, app_control_result_e result, void* data)
    { static_cast<std::vector<int>*>(data)->push_back(result); };
    ASSERT_EQ(app_control_send_launch_request(request, tell, &results), APP_CONTROL_ERROR_NONE);
    FailingCalls::FailNext("dbus_message_new_method_call");
    TurnUntil([&] { return !results.empty(); });
    EXPECT_FALSE(FailingCalls::IsToCome());
    EXPECT_THAT(results, ElementsAre(APP_CONTROL_RESULT_FAILED));
    app_control_destroy(request);
}
