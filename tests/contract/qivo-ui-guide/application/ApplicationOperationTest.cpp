#include "harness/Toolkit.h"
#include "qivo-ui-guide/Application.h"
#include "qivo-ui-guide/application/TestApplication.h"

using QivoUi::Application;
using QivoUi::ExtraDataMap;
using QivoUi::ExtraDataMapPtr;

namespace
{

class ApplicationOperationTest : public testing::Test
{
protected:
    void SetUp() override
    {
        Recorder::Reset();
        Platform::Reset();
    }

    ExtraDataMapPtr mData = std::make_shared<ExtraDataMap>(ExtraDataMap{{"key", "value"}});
};

// A hook that handles the operation.
class HandlingApplication : public HookedApplication
{
public:
    bool AppControllOperationImpl(std::string operation, ExtraDataMapPtr extraData) override
    {
        HookedApplication::AppControllOperationImpl(operation, extraData);
        return true;
    }
};

TEST_F(ApplicationOperationTest, AnswersTrueWhateverTheHookAnswers)
{
    HookedApplication refusing;
    HandlingApplication handling;

    EXPECT_TRUE(refusing.OnAppControllOperation("first", mData));
    EXPECT_TRUE(handling.OnAppControllOperation("second", mData));

    EXPECT_EQ(Recorder::Take(),
              Lines({"AppControllOperationImpl('first')", "AppControllOperationImpl('second')"}));
    EXPECT_EQ(refusing.mOperationData, mData);
}

TEST_F(ApplicationOperationTest, PassesAnOperationWithoutExtraDataOn)
{
    HookedApplication app;
    app.mOperationData = mData;

    EXPECT_TRUE(app.OnAppControllOperation("operation", nullptr));

    EXPECT_EQ(Recorder::Take(), Lines({"AppControllOperationImpl('operation')"}));
    EXPECT_EQ(app.mOperationData, nullptr);
}

TEST_F(ApplicationOperationTest, SavesTheOperationAndItsExtraData)
{
    PlainApplication app;

    app.SaveOperation("operation", mData);

    EXPECT_EQ(app.mOperation, "operation");
    EXPECT_EQ(app.mOperationExtraData, mData);
    EXPECT_EQ(app.mLaunchExtraData, nullptr);
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(ApplicationOperationTest, SavesAnOperationWithoutExtraData)
{
    PlainApplication app;
    app.SaveOperation("earlier", mData);

    app.SaveOperation("operation", nullptr);

    EXPECT_EQ(app.mOperation, "operation");
    EXPECT_EQ(app.mOperationExtraData, nullptr);
}

TEST_F(ApplicationOperationTest, ReleasesTheLaunchDataForNone)
{
    PlainApplication app;
    app.SetLaunchExtraData(mData);

    app.SetLaunchExtraData(nullptr);

    EXPECT_EQ(app.mLaunchExtraData, nullptr);
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(ApplicationOperationTest, SharesTheLaunchDataAndReleasesTheEarlierOnes)
{
    PlainApplication app;
    auto earlier = std::make_shared<ExtraDataMap>();
    const std::weak_ptr<ExtraDataMap> released = earlier;
    app.SetLaunchExtraData(std::move(earlier));

    app.SetLaunchExtraData(mData);

    EXPECT_EQ(app.mLaunchExtraData, mData);
    EXPECT_TRUE(released.expired());
    EXPECT_EQ(app.mOperationExtraData, nullptr);
}

TEST_F(ApplicationOperationTest, SetsAndClearsTheResumeFlag)
{
    PlainApplication app;

    app.SetResumeFlag(true);
    EXPECT_TRUE(app.mResumeFlag);
    app.SetResumeFlag(false);
    EXPECT_FALSE(app.mResumeFlag);
    EXPECT_EQ(Recorder::Take(), Lines());
}

class ApplicationReplyTest : public ApplicationOperationTest
{
protected:
    void SetUp() override
    {
        ApplicationOperationTest::SetUp();
        mRequest = Platform::MakeRequest("operation");
        Recorder::Name(mRequest, "asked");
    }

    PlainApplication mApp;
    app_control_h mRequest = nullptr;
};

TEST_F(ApplicationReplyTest, RepliesThatTheRequestSucceeded)
{
    mApp.ReplyAppControll(mRequest, true);

    EXPECT_EQ(Recorder::Take(), Lines({"mark(ReplyAppControll)", "app_control_create()",
                                       "app_control_reply_to_launch_request(request1, asked, 0)",
                                       "app_control_destroy(request1)"}));
}

TEST_F(ApplicationReplyTest, RepliesThatTheRequestFailed)
{
    mApp.ReplyAppControll(mRequest, false);

    EXPECT_EQ(Recorder::Take(), Lines({"mark(ReplyAppControll)", "app_control_create()",
                                       "app_control_reply_to_launch_request(request1, asked, -1)",
                                       "app_control_destroy(request1)"}));
}

TEST_F(ApplicationReplyTest, RepliesEvenWithoutARequest)
{
    mApp.ReplyAppControll(nullptr, true);

    EXPECT_EQ(Recorder::Take(), Lines({"mark(ReplyAppControll)", "app_control_create()",
                                       "app_control_reply_to_launch_request(request1, null, 0)",
                                       "app_control_destroy(request1)"}));
}

TEST_F(ApplicationReplyTest, GoesOnWithoutAReplyThatCountsAsMade)
{
    Recorder::Answer("app_control_create", 0);

    mApp.ReplyAppControll(mRequest, true);

    EXPECT_EQ(Recorder::Take(), Lines({"mark(ReplyAppControll)", "app_control_create()",
                                       "app_control_reply_to_launch_request(null, asked, 0)",
                                       "app_control_destroy(null)"}));
}

TEST_F(ApplicationReplyTest, ReportsAReplyThatCannotBeMade)
{
    for (const int result : {-5, 5})
    {
        Recorder::Answer("app_control_create", result);

        mApp.ReplyAppControll(mRequest, true);

        EXPECT_EQ(Recorder::Take(), Lines({"mark(ReplyAppControll)", "app_control_create()",
                                           "error(ReplyAppControll) app_control_create failed, " +
                                               std::to_string(result)}));
    }
}

TEST_F(ApplicationReplyTest, DestroysAReplyThatCannotBeSent)
{
    for (const int result : {-7, 7})
    {
        Recorder::Reset();
        Recorder::Name(mRequest, "asked");
        Recorder::Answer("app_control_reply_to_launch_request", result);

        mApp.ReplyAppControll(mRequest, true);

        EXPECT_EQ(Recorder::Take(),
                  Lines({"mark(ReplyAppControll)", "app_control_create()",
                         "app_control_reply_to_launch_request(request1, asked, 0)",
                         "error(ReplyAppControll) app_control_reply_to_launch_request failed! [" +
                             std::to_string(result) + "]",
                         "app_control_destroy(request1)"}));
    }
}

} // namespace
