#include "port/OffScreen.h"
#include "support/Allocations.h"

#include <app_common.h>
#include <app_control.h>
#include <device/battery.h>
#include <device/callback.h>
#include <efl_extension.h>
#include <system_settings.h>
#include <ui_extension.h>

#include <cstdio>
#include <cstdlib>
#include <gmock/gmock.h>

using testing::ElementsAre;

namespace
{

void DeviceChangedCB(device_callback_e, void*, void*)
{
}

void SettingChangedCB(system_settings_key_e, void*)
{
}

void BackCB(void*, Evas_Object*, void*)
{
}

Eina_Bool RotaryCB(void*, Evas_Object*, Eext_Rotary_Event_Info*)
{
    return EINA_FALSE;
}

/// One allocation after the other has no memory, and with each the call is refused with one line.
class OutOfMemory : public OffScreenTest
{
protected:
    /// @param call Tells whether it was refused for its lack of memory.
    template <typename Call> static void ExpectRefusals(const char* name, Call call)
    {
        for (long nth = 1;; ++nth)
        {
            const size_t before = LogLines().size();
            Allocations::Start(nth);
            const bool isRefused = call();
            const bool wasEnough = Allocations::Stop() < nth;
            const std::vector<std::string> lines(LogLines().begin() + before, LogLines().end());
            ASSERT_EQ(isRefused, !wasEnough) << name << ", allocation " << nth;
            if (wasEnough)
                return;
            ASSERT_THAT(lines, ElementsAre(name + std::string(": out of memory")));
        }
    }

    static bool IsNull(char* path)
    {
        std::free(path);
        return !path;
    }
};

TEST_F(OutOfMemory, OfTheFoldersIsNoFolder)
{
    ExpectRefusals("app_get_resource_path", [] { return IsNull(app_get_resource_path()); });
    // A path of the C++ library that cannot grow is not sound any more: no later one fails here.
    Allocations::Exhaust();
    EXPECT_TRUE(IsNull(app_get_data_path()));
    Allocations::Stop();
    EXPECT_EQ(LogLines().back(), "app_get_data_path: out of memory");
}

TEST_F(OutOfMemory, OfALaunchRequestChangesNothing)
{
    constexpr char kText[] = "org.example.a_text_that_a_string_does_not_hold_in_itself";
    app_control_h request = nullptr;
    char* value = nullptr;
    const auto expect = [](const char* name, auto call)
    { ExpectRefusals(name, [&] { return call() == APP_CONTROL_ERROR_OUT_OF_MEMORY; }); };
    expect("app_control_create", [&] { return app_control_create(&request); });
    expect("app_control_set_operation", [&] { return app_control_set_operation(request, kText); });
    expect("app_control_set_app_id", [&] { return app_control_set_app_id(request, kText); });
    expect("app_control_add_extra_data",
           [&] { return app_control_add_extra_data(request, kText, kText); });
    expect("app_control_get_extra_data",
           [&] { return app_control_get_extra_data(request, kText, &value); });
    expect("app_control_foreach_extra_data",
           [&]
           {
               return app_control_foreach_extra_data(
                   request, [](app_control_h, const char*, void*) { return false; }, nullptr);
           });
    EXPECT_STREQ(value, kText);
    std::free(value);
    app_control_destroy(request);
}

TEST_F(OutOfMemory, OfTheChargerAddsNoCallback)
{
    const auto isRefused = [](int result) { return result == DEVICE_ERROR_OUT_OF_MEMORY; };
    ExpectRefusals("device_battery_is_charging",
                   [&]
                   {
                       bool isCharging = false;
                       return isRefused(device_battery_is_charging(&isCharging));
                   });
    ExpectRefusals("device_add_callback",
                   [&]
                   {
                       return isRefused(device_add_callback(DEVICE_CALLBACK_BATTERY_CHARGING,
                                                            DeviceChangedCB, nullptr));
                   });
    EXPECT_EQ(device_remove_callback(DEVICE_CALLBACK_BATTERY_CHARGING, DeviceChangedCB),
              DEVICE_ERROR_NONE);
}

TEST_F(OutOfMemory, OfASettingHasNoValue)
{
    const auto isRefused = [](int result) { return result == SYSTEM_SETTINGS_ERROR_OUT_OF_MEMORY; };
    ExpectRefusals("system_settings_get_value_bool",
                   [&]
                   {
                       bool value = false;
                       return isRefused(system_settings_get_value_bool(
                           SYSTEM_SETTINGS_KEY_LOCALE_TIMEFORMAT_24HOUR, &value));
                   });
    ExpectRefusals("system_settings_get_value_string",
                   [&]
                   {
                       char* value = nullptr;
                       const int result = system_settings_get_value_string(
                           SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE, &value);
                       std::free(value);
                       return isRefused(result);
                   });
}

TEST_F(OutOfMemory, OfASettingSetsNoCallback)
{
    for (const auto key : {SYSTEM_SETTINGS_KEY_TIME_CHANGED, SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE,
                           SYSTEM_SETTINGS_KEY_LOCALE_TIMEFORMAT_24HOUR})
    {
        ExpectRefusals("system_settings_set_changed_cb",
                       [&]
                       {
                           return system_settings_set_changed_cb(key, SettingChangedCB, nullptr) ==
                                  SYSTEM_SETTINGS_ERROR_OUT_OF_MEMORY;
                       });
        EXPECT_EQ(system_settings_unset_changed_cb(key), SYSTEM_SETTINGS_ERROR_NONE);
    }
}

TEST_F(OutOfMemory, OfATableIsNoTable)
{
    char path[] = "/tmp/color-table-XXXXXX";
    std::FILE* file = fdopen(mkstemp(path), "w");
    std::fputs(R"(<ColorTable><Color id="a colour with a long name" r="1" g="2" b="3" a="4"/>)"
               "</ColorTable>",
               file);
    std::fclose(file);
    uxt_theme_color_table_h table = nullptr;
    ExpectRefusals("uxt_theme_add_color_table",
                   [&] { return !(table = uxt_theme_add_color_table(path)); });
    std::remove(path);
    ASSERT_EQ(uxt_theme_set_color_table(table), UXT_THEME_ERROR_NONE);
    ExpectRefusals("uxt_theme_object_set_color",
                   [&]
                   {
                       return uxt_theme_object_set_color(mWindow, "a colour with a long name") ==
                              UXT_THEME_ERROR_OUT_OF_MEMORY;
                   });
}

TEST_F(OutOfMemory, OfTheBezelAddsNoCallback)
{
    ExpectRefusals("eext_rotary_object_event_callback_priority_add",
                   [object = AddRectangle()]
                   {
                       return !eext_rotary_object_event_callback_priority_add(
                           object, EVAS_CALLBACK_PRIORITY_DEFAULT, RotaryCB, nullptr);
                   });
}

TEST_F(OutOfMemory, OfTheBackKeyAddsNoCallback)
{
    Allocations::Exhaust();
    eext_object_event_callback_add(mWindow, EEXT_CALLBACK_BACK, BackCB, nullptr);
    Allocations::Stop();
    EXPECT_THAT(LogLines(), ElementsAre("eext_object_event_callback_add: out of memory"));
}

TEST_F(OutOfMemory, OfACircleObjectIsNone)
{
    Eext_Circle_Surface* surface = nullptr;
    Evas_Object* conformant = AddRectangle();
    ExpectRefusals("eext_circle_surface_conformant_add",
                   [&] { return !(surface = eext_circle_surface_conformant_add(conformant)); });
    Evas_Object* scroller = AddScroller(kSize, 2 * kSize);
    ExpectRefusals("eext_circle_object_scroller_add",
                   [&] { return !eext_circle_object_scroller_add(scroller, surface); });
}

} // namespace
