#include <app_control.h>

#include <Ecore.h>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace
{
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class AppControl : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        ecore_app_no_system_modules();
        ecore_init();
    }
    static void TearDownTestSuite() { ecore_shutdown(); }
    void SetUp() override { ASSERT_EQ(app_control_create(&mHandle), APP_CONTROL_ERROR_NONE); }
    void TearDown() override { EXPECT_EQ(app_control_destroy(mHandle), APP_CONTROL_ERROR_NONE); }

    std::string Operation() const
    {
        char* operation = nullptr;
        EXPECT_EQ(app_control_get_operation(mHandle, &operation), APP_CONTROL_ERROR_NONE);
        return Owned(operation);
    }

    std::string Extra(const char* key) const
    {
        char* value = nullptr;
        EXPECT_EQ(app_control_get_extra_data(mHandle, key, &value), APP_CONTROL_ERROR_NONE);
        return Owned(value);
    }

    static std::string Owned(char* text)
    {
        const std::unique_ptr<char, decltype(&std::free)> owner(text, std::free);
        return text == nullptr ? "null" : text;
    }

    app_control_h mHandle = nullptr;
};

struct Walk
{
    std::vector<std::string> keys;
    size_t most = 100;
};

bool SCollect(app_control_h, const char* key, void* data)
{
    auto* walk = static_cast<Walk*>(data);
    walk->keys.emplace_back(key);
    return walk->keys.size() < walk->most;
}

bool SCollectAndChange(app_control_h handle, const char* key, void* data)
{
    app_control_add_extra_data(handle, ("new " + std::string(key)).c_str(), "value");
    app_control_add_extra_data(handle, key, "changed");
    return SCollect(handle, key, data);
}
} // namespace

TEST_F(AppControl, BeginsWithTheDefaultOperation)
{
    EXPECT_EQ(Operation(), "default");
}

TEST_F(AppControl, KeepsACopyOfItsOperation)
{
    std::string operation = "open";
    EXPECT_EQ(app_control_set_operation(mHandle, operation.c_str()), APP_CONTROL_ERROR_NONE);
    operation = "gone";
    EXPECT_EQ(Operation(), "open");
}

TEST_F(AppControl, KeepsItsOperationWhenANewOneIsRejected)
{
    app_control_set_operation(mHandle, "open");
    for (const char* bad : {static_cast<const char*>(nullptr), "", "\xff", "cut \xe2\x82"})
        EXPECT_EQ(app_control_set_operation(mHandle, bad), APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(Operation(), "open");
}

TEST_F(AppControl, TakesApplicationIds)
{
    for (const std::string& id : {std::string("org.example.Clock"), std::string("a._b.c-d_9"),
                                  "a." + std::string(253, 'b')})
        EXPECT_EQ(app_control_set_app_id(mHandle, id.c_str()), APP_CONTROL_ERROR_NONE) << id;
}

TEST_F(AppControl, RejectsWhatIsNoApplicationId)
{
    for (const std::string& id :
         {std::string(), std::string("clock"), std::string(".a.b"), std::string("a.b."),
          std::string("a..b"), std::string("a.9b"), std::string("9.b"), std::string(":1.5"),
          std::string("a.b c"), std::string("a/b.c"), std::string("a.b\n"), std::string("\xff.b"),
          std::string("a.\u00e4"), "a." + std::string(254, 'b')})
        EXPECT_EQ(app_control_set_app_id(mHandle, id.c_str()), APP_CONTROL_ERROR_INVALID_PARAMETER)
            << id;
    EXPECT_EQ(app_control_set_app_id(mHandle, nullptr), APP_CONTROL_ERROR_INVALID_PARAMETER);
}

TEST_F(AppControl, NamesTheRejectedApplicationIdInOneLine)
{
    testing::internal::CaptureStderr();
    app_control_set_app_id(mHandle, "a b\n");
    const std::string line = testing::internal::GetCapturedStderr();
    EXPECT_THAT(line, HasSubstr("app_control_set_app_id: \"a b\\x0a\" is not an application id"));
    EXPECT_EQ(line.find('\n'), line.size() - 1);
}

TEST_F(AppControl, HoldsOneTextForAKey)
{
    EXPECT_EQ(app_control_add_extra_data(mHandle, "key", "one"), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(app_control_add_extra_data(mHandle, "key", "two"), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(app_control_add_extra_data(mHandle, "empty", ""), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(Extra("key"), "two");
    EXPECT_EQ(Extra("empty"), "");
}

TEST_F(AppControl, RejectsBadExtraData)
{
    for (const char* key : {static_cast<const char*>(nullptr), "", "\xc0\xaf"})
        EXPECT_EQ(app_control_add_extra_data(mHandle, key, "value"),
                  APP_CONTROL_ERROR_INVALID_PARAMETER);
    for (const char* value : {static_cast<const char*>(nullptr), "\xed\xa0\x80"})
        EXPECT_EQ(app_control_add_extra_data(mHandle, "key", value),
                  APP_CONTROL_ERROR_INVALID_PARAMETER);
    Walk walk;
    app_control_foreach_extra_data(mHandle, SCollect, &walk);
    EXPECT_THAT(walk.keys, IsEmpty());
}

TEST_F(AppControl, LeavesTheResultOfAMissingKeyUntouched)
{
    char untouched[] = "untouched";
    char* value = untouched;
    EXPECT_EQ(app_control_get_extra_data(mHandle, "no", &value), APP_CONTROL_ERROR_KEY_NOT_FOUND);
    EXPECT_EQ(value, untouched);
}

TEST_F(AppControl, WalksItsKeysInByteOrder)
{
    for (const char* key : {"b", "a", "Z", "\u00e4"})
        app_control_add_extra_data(mHandle, key, "value");
    Walk walk;
    EXPECT_EQ(app_control_foreach_extra_data(mHandle, SCollect, &walk), APP_CONTROL_ERROR_NONE);
    EXPECT_THAT(walk.keys, ElementsAre("Z", "a", "b", "\u00e4"));
}

TEST_F(AppControl, EndsTheWalkWhereTheCallbackDoes)
{
    for (const char* key : {"a", "b", "c"})
        app_control_add_extra_data(mHandle, key, "value");
    Walk walk;
    walk.most = 2;
    EXPECT_EQ(app_control_foreach_extra_data(mHandle, SCollect, &walk), APP_CONTROL_ERROR_NONE);
    EXPECT_THAT(walk.keys, ElementsAre("a", "b"));
}

TEST_F(AppControl, LeavesTheCallersOwnExceptionsToIt)
{
    app_control_add_extra_data(mHandle, "a", "value");
    const auto throwing = [](app_control_h, const char*, void*) -> bool { throw std::bad_alloc(); };
    EXPECT_THROW(app_control_foreach_extra_data(mHandle, throwing, nullptr), std::bad_alloc);
}

TEST_F(AppControl, MayBeChangedDuringTheWalk)
{
    app_control_add_extra_data(mHandle, "a", "value");
    app_control_add_extra_data(mHandle, "z", "value");
    Walk walk;
    app_control_foreach_extra_data(mHandle, SCollectAndChange, &walk);
    EXPECT_THAT(walk.keys, ElementsAre("a", "z"));
    EXPECT_EQ(Extra("a"), "changed");
    EXPECT_EQ(Extra("new z"), "value");
}

TEST_F(AppControl, RejectsMissingArguments)
{
    char* text = nullptr;
    const int results[] = {
        app_control_create(nullptr),
        app_control_destroy(nullptr),
        app_control_get_operation(nullptr, &text),
        app_control_get_operation(mHandle, nullptr),
        app_control_set_operation(nullptr, "open"),
        app_control_set_app_id(nullptr, "org.example.Clock"),
        app_control_get_extra_data(nullptr, "key", &text),
        app_control_get_extra_data(mHandle, nullptr, &text),
        app_control_get_extra_data(mHandle, "key", nullptr),
        app_control_add_extra_data(nullptr, "key", "value"),
        app_control_foreach_extra_data(nullptr, SCollect, nullptr),
        app_control_foreach_extra_data(mHandle, nullptr, nullptr),
        app_control_send_launch_request(nullptr, nullptr, nullptr),
        app_control_reply_to_launch_request(nullptr, mHandle, APP_CONTROL_RESULT_SUCCEEDED),
        app_control_reply_to_launch_request(mHandle, nullptr, APP_CONTROL_RESULT_SUCCEEDED),
        app_control_reply_to_launch_request(mHandle, mHandle, app_control_result_e(7)),
    };
    for (const int result : results)
        EXPECT_EQ(result, APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(text, nullptr);
}

TEST_F(AppControl, HasNoSenderWhoWaitsForAReply)
{
    EXPECT_EQ(app_control_reply_to_launch_request(mHandle, mHandle, APP_CONTROL_RESULT_FAILED),
              APP_CONTROL_ERROR_NO_SENDER);
}

TEST_F(AppControl, IsNotSentWithoutAnApplicationId)
{
    EXPECT_EQ(app_control_send_launch_request(mHandle, nullptr, nullptr),
              APP_CONTROL_ERROR_APP_ID_NOT_SET);
}

TEST_F(AppControl, IsNotSentWhenItIsTooBig)
{
    app_control_set_app_id(mHandle, "org.example.Clock");
    app_control_add_extra_data(mHandle, "key", std::string(1024 * 1024, 'v').c_str());
    EXPECT_EQ(app_control_send_launch_request(mHandle, nullptr, nullptr),
              APP_CONTROL_ERROR_INVALID_PARAMETER);
}

TEST_F(AppControl, IsNotSentWithMoreThan4096Entries)
{
    app_control_set_app_id(mHandle, "org.example.Clock");
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/no-such-socket", 1);
    for (int i = 0; i < 4096; ++i)
        app_control_add_extra_data(mHandle, std::to_string(i).c_str(), "");
    EXPECT_EQ(app_control_send_launch_request(mHandle, nullptr, nullptr),
              APP_CONTROL_ERROR_NO_SESSION_BUS);
    app_control_add_extra_data(mHandle, "one more", "");
    EXPECT_EQ(app_control_send_launch_request(mHandle, nullptr, nullptr),
              APP_CONTROL_ERROR_INVALID_PARAMETER);
}

TEST_F(AppControl, IsNotSentWithoutASessionBus)
{
    app_control_set_app_id(mHandle, "org.example.Clock");
    setenv("XDG_RUNTIME_DIR", "/no-such-folder", 1);
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    EXPECT_EQ(app_control_send_launch_request(mHandle, nullptr, nullptr),
              APP_CONTROL_ERROR_NO_SESSION_BUS);
    for (const char* address : {"unix:path=/no-such-socket", "nonsense", "unix:"})
    {
        setenv("DBUS_SESSION_BUS_ADDRESS", address, 1);
        EXPECT_EQ(app_control_send_launch_request(mHandle, nullptr, nullptr),
                  APP_CONTROL_ERROR_NO_SESSION_BUS)
            << address;
    }
}
