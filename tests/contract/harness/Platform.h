#ifndef TESTS_CONTRACT_HARNESS_PLATFORM_H
#define TESTS_CONTRACT_HARNESS_PLATFORM_H

#include <app.h>
#include <efl_extension.h>
#include <functional>
#include <map>
#include <string>
#include <system_settings.h>
#include <vector>

/**
 * The watch, faked: every call of it is recorded, answered from what a test has set here, and
 * can be told to fail through the Recorder. Out-parameters are left out of the recorded calls.
 */
namespace Platform
{

/** Forgets everything that was set, registered and logged. */
void Reset();

/** The build's own resources, ending with "/". */
std::string ResourceDirectory();

struct LogLine
{
    int buffer;
    int priority;
    std::string tag;
    std::string format;
    std::string file;
    std::string function;
    int line;
    std::string text;
};

/** The log lines since the last Reset(). */
const std::vector<LogLine>& LogLines();

/** What ui_app_main() does with what it was given; returns 0 until set. */
extern std::function<int(ui_app_lifecycle_callback_s*, void*)> sMainLoop;

/** The system's language; null makes the watch give no text. */
void SetLanguage(const char* language);

/** Calls the callback registered for a setting, if there is one. */
void ChangeSetting(system_settings_key_e key);

/** The charging state that device_battery_is_charging() reads. */
void SetCharging(bool isCharging);

/** The charger goes in or out: the state, and the callback if one is registered. */
void PlugCharger();
void UnplugCharger();

/** From now on a call that is told to fail fills its out-parameter all the same. */
void FillOutputsOnFailure();

/** From now on a call that is told its answer gives nothing besides, even when it succeeds. */
void LeaveOutputs();

/** A launch request, which the Platform keeps; `operation` may be null. */
app_control_h MakeRequest(const char* operation,
                          const std::map<std::string, std::string>& extraData = {});

/** Calls the back-key callbacks of an object. */
void PressBack(Evas_Object* object);

/** Calls the rotary callbacks of an object, activated or not. */
void TurnBezel(Evas_Object* object, Eext_Rotary_Event_Direction direction, unsigned timeStamp);

/** The object that gets the bezel's detents. */
Evas_Object* ActivatedObject();

} // namespace Platform

#endif
