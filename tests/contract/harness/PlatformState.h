#ifndef TESTS_CONTRACT_HARNESS_PLATFORMSTATE_H
#define TESTS_CONTRACT_HARNESS_PLATFORMSTATE_H

#include "harness/Platform.h"
#include "harness/Recorder.h"
#include <device/callback.h>
#include <list>
#include <memory>

struct app_control_s
{
    bool hasOperation;
    std::string operation;
    std::map<std::string, std::string> extraData;
};

/** What the fakes of the watch's libraries share; for them only. */
namespace Platform
{

struct BackCallback
{
    Evas_Object* object;
    Eext_Event_Cb callback;
    void* data;
};

struct RotaryCallback
{
    Evas_Object* object;
    Eext_Rotary_Event_Cb callback;
    void* data;
};

struct SettingCallback
{
    system_settings_changed_cb callback;
    void* data;
};

struct State
{
    std::vector<LogLine> logLines;
    bool fillsOutputsOnFailure = false;
    bool leavesOutputs = false;
    bool hasLanguage = true;
    std::string language = "en_US.UTF-8";
    std::map<system_settings_key_e, SettingCallback> settingCallbacks;
    bool isCharging = false;
    device_changed_cb chargerCallback = nullptr;
    void* chargerData = nullptr;
    std::list<std::unique_ptr<app_control_s>> requests;
    std::vector<BackCallback> backCallbacks;
    std::vector<RotaryCallback> rotaryCallbacks;
    Evas_Object* activatedObject = nullptr;
};

extern State sState;

/// The told answer of a call that returns an int, else success.
int Result(const char* call);

/// As Result(); `gives` says whether the call is to give its output besides.
int Result(const char* call, bool& gives);

/// Whether the call was told an answer, which is then taken.
bool IsToldToFail(const char* call);

/// A copy that the caller frees; null when the call shall fail.
char* Copy(const char* call, const std::string& text);

/// Only a call that succeeds gives its caller a text to free.
char* Give(std::string& text, int result);

} // namespace Platform

#endif
