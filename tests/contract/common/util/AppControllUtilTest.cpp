#include "common/util/AppControllUtil.h"

#include "harness/Toolkit.h"

using QivoUi::ExtraDataMap;
using QivoUi::ExtraDataMapPtr;

namespace
{

ExtraDataMapPtr MakeExtraData(const ExtraDataMap& entries)
{
    return std::make_shared<ExtraDataMap>(entries);
}

class AppControllUtilTest : public testing::Test
{
protected:
    void SetUp() override
    {
        Recorder::Reset();
        Platform::Reset();
    }

    void TearDown() override { SetUp(); }

    app_control_h MakeIncomingRequest(const ExtraDataMap& extraData = {})
    {
        app_control_h request = Platform::MakeRequest("view", extraData);
        Recorder::Name(request, "incoming");
        return request;
    }
};

TEST_F(AppControllUtilTest, LaunchesAnAppWithAnOperation)
{
    AppControllUtil::LaunchApp("com.example.app", "pay");

    EXPECT_EQ(Recorder::Take(),
              Lines({"app_control_create()", "app_control_set_app_id(request1, 'com.example.app')",
                     "app_control_add_extra_data(request1, '__FAKE_EFFECT__', 'ON')",
                     "app_control_set_operation(request1, 'pay')",
                     "app_control_send_launch_request(request1, null, null)",
                     "app_control_destroy(request1)"}));
}

TEST_F(AppControllUtilTest, LaunchesAnAppWithoutAnOperation)
{
    AppControllUtil::LaunchApp("com.example.app", "");

    EXPECT_EQ(Recorder::Take(),
              Lines({"app_control_create()", "app_control_set_app_id(request1, 'com.example.app')",
                     "app_control_add_extra_data(request1, '__FAKE_EFFECT__', 'ON')",
                     "app_control_send_launch_request(request1, null, null)",
                     "app_control_destroy(request1)"}));
}

TEST_F(AppControllUtilTest, LaunchesAnAppWithExtraDataInTheOrderOfTheKeys)
{
    AppControllUtil::LaucnhAppWithExtraData(
        "com.example.app", "pay", MakeExtraData({{"ä", "4"}, {"b", "2"}, {"a", "1"}, {"B", "3"}}));

    EXPECT_EQ(Recorder::Take(),
              Lines({"app_control_create()", "app_control_set_app_id(request1, 'com.example.app')",
                     "app_control_add_extra_data(request1, '__FAKE_EFFECT__', 'ON')",
                     "app_control_set_operation(request1, 'pay')",
                     "app_control_add_extra_data(request1, 'B', '3')",
                     "app_control_add_extra_data(request1, 'a', '1')",
                     "app_control_add_extra_data(request1, 'b', '2')",
                     "app_control_add_extra_data(request1, 'ä', '4')",
                     "app_control_send_launch_request(request1, null, null)",
                     "app_control_destroy(request1)"}));
}

TEST_F(AppControllUtilTest, SendsNoExtraDataWithAnEmptyKeyOrValue)
{
    AppControllUtil::LaucnhAppWithExtraData(
        "app", "", MakeExtraData({{"", "1"}, {"a", ""}, {"b", "2"}, {"c", ""}, {"d", "4"}}));

    EXPECT_EQ(Recorder::Take(),
              Lines({"app_control_create()", "app_control_set_app_id(request1, 'app')",
                     "app_control_add_extra_data(request1, '__FAKE_EFFECT__', 'ON')",
                     "app_control_add_extra_data(request1, 'b', '2')",
                     "app_control_add_extra_data(request1, 'd', '4')",
                     "app_control_send_launch_request(request1, null, null)",
                     "app_control_destroy(request1)"}));
}

TEST_F(AppControllUtilTest, LaunchesWithNoExtraDataOrNoneInItAsWithout)
{
    for (const ExtraDataMapPtr& extraData : {ExtraDataMapPtr(), MakeExtraData({})})
    {
        Recorder::Reset();
        AppControllUtil::LaucnhAppWithExtraData("app", "pay", extraData);
        EXPECT_EQ(Recorder::Take(),
                  Lines({"app_control_create()", "app_control_set_app_id(request1, 'app')",
                         "app_control_add_extra_data(request1, '__FAKE_EFFECT__', 'ON')",
                         "app_control_set_operation(request1, 'pay')",
                         "app_control_send_launch_request(request1, null, null)",
                         "app_control_destroy(request1)"}));
    }
}

TEST_F(AppControllUtilTest, LaunchesAllTheSameWhenAnEntryIsRefused)
{
    Recorder::Answer("app_control_add_extra_data", -1, 2);

    AppControllUtil::LaucnhAppWithExtraData("app", "", MakeExtraData({{"a", "1"}, {"b", "2"}}));

    EXPECT_EQ(Recorder::Take(),
              Lines({"app_control_create()", "app_control_set_app_id(request1, 'app')",
                     "app_control_add_extra_data(request1, '__FAKE_EFFECT__', 'ON')",
                     "app_control_add_extra_data(request1, 'a', '1')",
                     "app_control_add_extra_data(request1, 'b', '2')",
                     "app_control_send_launch_request(request1, null, null)",
                     "app_control_destroy(request1)"}));
}

TEST_F(AppControllUtilTest, LaunchesNothingWhenAskedToMindThePowerSavingMode)
{
    AppControllUtil::LaucnhAppWithExtraDataWhenNotPowerSavingMode("app", "pay",
                                                                  MakeExtraData({{"a", "1"}}));

    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(AppControllUtilTest, RepliesSuccessWithoutAnyExtraData)
{
    AppControllUtil::ReplyAppControl(MakeIncomingRequest(), true, MakeExtraData({{"a", "1"}}));

    EXPECT_EQ(Recorder::Take(), Lines({"app_control_create()",
                                       "app_control_reply_to_launch_request(request1, incoming, 0)",
                                       "app_control_destroy(request1)"}));
}

TEST_F(AppControllUtilTest, RepliesFailureWithExtraDataInTheOrderOfTheKeys)
{
    AppControllUtil::ReplyAppControl(MakeIncomingRequest(), false,
                                     MakeExtraData({{"b", "2"}, {"", "x"}, {"a", "1"}, {"c", ""}}));

    EXPECT_EQ(Recorder::Take(),
              Lines({"app_control_create()", "app_control_add_extra_data(request1, 'a', '1')",
                     "app_control_add_extra_data(request1, 'b', '2')",
                     "app_control_reply_to_launch_request(request1, incoming, -1)",
                     "app_control_destroy(request1)"}));
}

TEST_F(AppControllUtilTest, RepliesFailureWithNoExtraDataOrNoneInIt)
{
    for (const ExtraDataMapPtr& extraData : {ExtraDataMapPtr(), MakeExtraData({})})
    {
        Recorder::Reset();
        AppControllUtil::ReplyAppControl(MakeIncomingRequest(), false, extraData);
        EXPECT_EQ(Recorder::Take(),
                  Lines({"app_control_create()",
                         "app_control_reply_to_launch_request(request1, incoming, -1)",
                         "app_control_destroy(request1)"}));
    }
}

TEST_F(AppControllUtilTest, RepliesFailureAlsoWhenAnEntryIsRefused)
{
    Recorder::Answer("app_control_add_extra_data", -1);

    AppControllUtil::ReplyAppControl(MakeIncomingRequest(), false,
                                     MakeExtraData({{"a", "1"}, {"b", "2"}}));

    EXPECT_EQ(Recorder::Take(),
              Lines({"app_control_create()", "app_control_add_extra_data(request1, 'a', '1')",
                     "app_control_add_extra_data(request1, 'b', '2')",
                     "app_control_reply_to_launch_request(request1, incoming, -1)",
                     "app_control_destroy(request1)"}));
}

TEST_F(AppControllUtilTest, RepliesNothingWhenNoReplyCanBeMade)
{
    for (const int result : {-3, 3})
    {
        Recorder::Answer("app_control_create", result);
        AppControllUtil::ReplyAppControl(nullptr, true, nullptr);
        EXPECT_EQ(Recorder::Take(),
                  Lines({"app_control_create()", "error(ReplyAppControl) app_control_create "
                                                 "failed, " +
                                                     std::to_string(result)}));
    }
}

TEST_F(AppControllUtilTest, GoesOnWithoutAReplyThatCountsAsMade)
{
    Recorder::Answer("app_control_create", 0);

    AppControllUtil::ReplyAppControl(MakeIncomingRequest(), false, MakeExtraData({{"a", "1"}}));

    EXPECT_EQ(Recorder::Take(),
              Lines({"app_control_create()", "app_control_add_extra_data(null, 'a', '1')",
                     "app_control_reply_to_launch_request(null, incoming, -1)",
                     "app_control_destroy(null)"}));
}

TEST_F(AppControllUtilTest, LogsAReplyThatCannotBeSent)
{
    for (const bool succeeded : {true, false})
    {
        for (const int result : {-7, 7})
        {
            Recorder::Reset();
            Recorder::Answer("app_control_reply_to_launch_request", result);
            AppControllUtil::ReplyAppControl(MakeIncomingRequest(), succeeded, nullptr);
            EXPECT_EQ(
                Recorder::Take(),
                Lines({"app_control_create()",
                       std::string("app_control_reply_to_launch_request(request1, incoming, ") +
                           (succeeded ? "0)" : "-1)"),
                       "error(ReplyAppControl) app_control_reply_to_launch_request failed! [" +
                           std::to_string(result) + "]",
                       "app_control_destroy(request1)"}));
        }
    }
}

TEST_F(AppControllUtilTest, ReportsANullRequestOnlyAfterItsUse)
{
    AppControllUtil::ReplyAppControl(nullptr, false, MakeExtraData({{"a", "1"}}));

    EXPECT_EQ(Recorder::Take(),
              Lines({"app_control_create()", "app_control_add_extra_data(request1, 'a', '1')",
                     "app_control_reply_to_launch_request(request1, null, -1)",
                     "app_control_destroy(request1)",
                     "error(ReplyAppControl) Invalid appControl value"}));
}

TEST_F(AppControllUtilTest, ReportsANullRequestAfterAReplyThatCannotBeSent)
{
    Recorder::Answer("app_control_reply_to_launch_request", -7);

    AppControllUtil::ReplyAppControl(nullptr, true, nullptr);

    EXPECT_EQ(
        Recorder::Take(),
        Lines({"app_control_create()", "app_control_reply_to_launch_request(request1, null, 0)",
               "error(ReplyAppControl) app_control_reply_to_launch_request failed! [-7]",
               "app_control_destroy(request1)",
               "error(ReplyAppControl) Invalid appControl value"}));
}

TEST_F(AppControllUtilTest, ReadsTheExtraDataOfARequest)
{
    const ExtraDataMap entries = {{"b", "2"}, {"a", "1"}, {"empty", ""}};

    const ExtraDataMapPtr extraData = AppControllUtil::GetExtraData(MakeIncomingRequest(entries));

    ASSERT_TRUE(extraData);
    EXPECT_EQ(*extraData, entries);
    EXPECT_EQ(extraData.use_count(), 1);
    EXPECT_EQ(Recorder::Take(),
              Lines({"app_control_foreach_extra_data(incoming, AppControllUtil::ForEachExtraData)",
                     "app_control_get_extra_data(incoming, 'a')",
                     "app_control_get_extra_data(incoming, 'b')",
                     "app_control_get_extra_data(incoming, 'empty')"}));
}

TEST_F(AppControllUtilTest, ReadsNoExtraDataAsAnEmptyMap)
{
    const ExtraDataMapPtr extraData = AppControllUtil::GetExtraData(MakeIncomingRequest());

    ASSERT_TRUE(extraData);
    EXPECT_TRUE(extraData->empty());
}

TEST_F(AppControllUtilTest, AsksEvenWithoutARequestAndGivesAnEmptyMap)
{
    Recorder::Answer("app_control_foreach_extra_data", -1);

    const ExtraDataMapPtr extraData = AppControllUtil::GetExtraData(nullptr);

    ASSERT_TRUE(extraData);
    EXPECT_TRUE(extraData->empty());
    EXPECT_EQ(Recorder::Take(), Lines({"app_control_foreach_extra_data(null, "
                                       "AppControllUtil::ForEachExtraData)"}));
}

TEST_F(AppControllUtilTest, ReadsExtraDataThatCannotBeWalkedAsAnEmptyMap)
{
    Recorder::Answer("app_control_foreach_extra_data", -1);

    const ExtraDataMapPtr extraData =
        AppControllUtil::GetExtraData(MakeIncomingRequest({{"a", "1"}}));

    ASSERT_TRUE(extraData);
    EXPECT_TRUE(extraData->empty());
    EXPECT_EQ(Recorder::Take(), Lines({"app_control_foreach_extra_data(incoming, "
                                       "AppControllUtil::ForEachExtraData)"}));
}

TEST_F(AppControllUtilTest, StoresAValueThatCannotBeReadAsEmptyAndGoesOn)
{
    Recorder::Answer("app_control_get_extra_data", -1);

    const ExtraDataMapPtr extraData =
        AppControllUtil::GetExtraData(MakeIncomingRequest({{"a", "1"}, {"b", "2"}}));

    EXPECT_EQ(*extraData, ExtraDataMap({{"a", ""}, {"b", "2"}}));
    EXPECT_EQ(Recorder::TakeLog(), Lines());
}

TEST_F(AppControllUtilTest, StoresAValueThatWasReadInSpiteOfAnError)
{
    Recorder::Answer("app_control_get_extra_data", -1);
    Platform::FillOutputsOnFailure();

    const ExtraDataMapPtr extraData =
        AppControllUtil::GetExtraData(MakeIncomingRequest({{"a", "1"}}));

    EXPECT_EQ(*extraData, ExtraDataMap({{"a", "1"}}));
}

TEST_F(AppControllUtilTest, OverwritesAnEntryAndAsksForMore)
{
    ExtraDataMap extraData = {{"a", "old"}, {"b", "kept"}};

    EXPECT_TRUE(
        AppControllUtil::ForEachExtraData(MakeIncomingRequest({{"a", "new"}}), "a", &extraData));

    EXPECT_EQ(extraData, ExtraDataMap({{"a", "new"}, {"b", "kept"}}));
}

TEST_F(AppControllUtilTest, AsksEvenWithoutARequestAndStoresAnEmptyValue)
{
    ExtraDataMap extraData;
    Recorder::Answer("app_control_get_extra_data", -1);

    EXPECT_TRUE(AppControllUtil::ForEachExtraData(nullptr, "a", &extraData));

    EXPECT_EQ(extraData, ExtraDataMap({{"a", ""}}));
    EXPECT_EQ(Recorder::Take(), Lines({"app_control_get_extra_data(null, 'a')"}));
}

TEST_F(AppControllUtilTest, StopsTheWalkWithoutAMap)
{
    EXPECT_FALSE(
        AppControllUtil::ForEachExtraData(MakeIncomingRequest({{"a", "1"}}), "a", nullptr));

    EXPECT_EQ(Recorder::Take(), Lines({"error(ForEachExtraData) map is NULL"}));
}

} // namespace
