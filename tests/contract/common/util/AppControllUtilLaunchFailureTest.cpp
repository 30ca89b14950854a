#include "common/util/AppControllUtil.h"

#include "harness/Toolkit.h"

using QivoUi::ExtraDataMap;

namespace
{

/** What both ways to launch an app, by name, do when a step fails: they leave out the rest. */
class LaunchFailureTest : public testing::TestWithParam<std::string>
{
protected:
    void SetUp() override
    {
        Recorder::Reset();
        Platform::Reset();
    }

    void TearDown() override { SetUp(); }

    static Lines Launch()
    {
        if (GetParam() == "LaunchApp")
        {
            AppControllUtil::LaunchApp("app", "pay");
        }
        else
        {
            AppControllUtil::LaucnhAppWithExtraData("app", "pay", nullptr);
        }
        return Recorder::Take();
    }

    static std::string Failure(const std::string& reason)
    {
        return "error(" + GetParam() + ") exception !! [[" + GetParam() + "]" + reason + "]";
    }
};

TEST_P(LaunchFailureTest, DestroysNothingWhenNoRequestCanBeMade)
{
    Recorder::Answer("app_control_create", -1);

    EXPECT_EQ(Launch(), Lines({"app_control_create()", Failure("service handle create failed!")}));
}

TEST_P(LaunchFailureTest, DestroysARequestThatWasMadeInSpiteOfAnError)
{
    Recorder::Answer("app_control_create", -1);
    Platform::FillOutputsOnFailure();

    EXPECT_EQ(Launch(), Lines({"app_control_create()", Failure("service handle create failed!"),
                               "app_control_destroy(request1)"}));
}

TEST_P(LaunchFailureTest, SendsNothingWithoutARequest)
{
    for (const int result : {0, 1})
    {
        Recorder::Answer("app_control_create", result);

        EXPECT_EQ(Launch(), Lines({"app_control_create()", Failure("service handle is NULL")}));
    }
}

TEST_P(LaunchFailureTest, SendsNothingWhenTheAppIsRefused)
{
    Recorder::Answer("app_control_set_app_id", -1);

    EXPECT_EQ(Launch(), Lines({"app_control_create()", "app_control_set_app_id(request1, 'app')",
                               Failure("Fail to set package"), "app_control_destroy(request1)"}));
}

TEST_P(LaunchFailureTest, SendsNothingWhenTheEffectIsRefused)
{
    for (const int result : {-1, 1})
    {
        Recorder::Reset();
        Recorder::Answer("app_control_add_extra_data", result);

        EXPECT_EQ(Launch(),
                  Lines({"app_control_create()", "app_control_set_app_id(request1, 'app')",
                         "app_control_add_extra_data(request1, '__FAKE_EFFECT__', 'ON')",
                         Failure("Fail to set APP_CONTROL_DATA_SPLASH_IMAGE"),
                         "app_control_destroy(request1)"}));
    }
}

TEST_P(LaunchFailureTest, SendsNothingWhenTheOperationIsRefused)
{
    for (const int result : {-1, 1})
    {
        Recorder::Reset();
        Recorder::Answer("app_control_set_operation", result);

        EXPECT_EQ(Launch(),
                  Lines({"app_control_create()", "app_control_set_app_id(request1, 'app')",
                         "app_control_add_extra_data(request1, '__FAKE_EFFECT__', 'ON')",
                         "app_control_set_operation(request1, 'pay')",
                         Failure("Fail to set operation"), "app_control_destroy(request1)"}));
    }
}

TEST_P(LaunchFailureTest, LogsARequestThatCannotBeSent)
{
    Recorder::Answer("app_control_send_launch_request", -1);

    EXPECT_EQ(Launch(),
              Lines({"app_control_create()", "app_control_set_app_id(request1, 'app')",
                     "app_control_add_extra_data(request1, '__FAKE_EFFECT__', 'ON')",
                     "app_control_set_operation(request1, 'pay')",
                     "app_control_send_launch_request(request1, null, null)",
                     Failure("Fail to launch request"), "app_control_destroy(request1)"}));
}

TEST_P(LaunchFailureTest, TakesPositiveResultsOfTheAppAndOfSendingAsSuccess)
{
    Recorder::Answer("app_control_create", 1);
    Platform::FillOutputsOnFailure();
    Recorder::Answer("app_control_set_app_id", 1);
    Recorder::Answer("app_control_send_launch_request", 1);

    EXPECT_EQ(Launch(), Lines({"app_control_create()", "app_control_set_app_id(request1, 'app')",
                               "app_control_add_extra_data(request1, '__FAKE_EFFECT__', 'ON')",
                               "app_control_set_operation(request1, 'pay')",
                               "app_control_send_launch_request(request1, null, null)",
                               "app_control_destroy(request1)"}));
}

INSTANTIATE_TEST_SUITE_P(BothWays, LaunchFailureTest,
                         testing::Values("LaunchApp", "LaucnhAppWithExtraData"),
                         [](const auto& way) { return way.param; });

TEST(LaunchWithExtraDataFailureTest, AddsNoExtraDataWhenTheOperationIsRefused)
{
    Recorder::Reset();
    Platform::Reset();
    Recorder::Answer("app_control_set_operation", -1);

    AppControllUtil::LaucnhAppWithExtraData(
        "app", "pay", std::make_shared<ExtraDataMap>(ExtraDataMap{{"a", "1"}}));

    EXPECT_EQ(Recorder::TakeOnly({"app_control_add_extra_data", "app_control_send", "error("}),
              Lines({"app_control_add_extra_data(request1, '__FAKE_EFFECT__', 'ON')",
                     "error(LaucnhAppWithExtraData) exception !! "
                     "[[LaucnhAppWithExtraData]Fail to set operation]"}));
}

} // namespace
