#include "harness/PlatformState.h"
#include <cstring>

namespace Platform
{

State sState;

// The told answer of a call that returns an int, else success.
int Result(const char* call)
{
    std::intptr_t answer = 0;
    return Recorder::TakeAnswer(call, answer) ? static_cast<int>(answer) : 0;
}

int Result(const char* call, bool& gives)
{
    std::intptr_t answer = 0;
    const bool isTold = Recorder::TakeAnswer(call, answer);
    gives = !isTold || !sState.leavesOutputs;
    return static_cast<int>(answer);
}

bool IsToldToFail(const char* call)
{
    std::intptr_t answer = 0;
    return Recorder::TakeAnswer(call, answer);
}

char* Copy(const char* call, const std::string& text)
{
    const Allocations::Pause pause;
    return IsToldToFail(call) ? nullptr : strdup(text.c_str());
}

// Only a call that succeeds gives its caller a text to free.
char* Give(std::string& text, int result)
{
    return result == 0 ? strdup(text.c_str()) : text.data();
}

namespace
{

// A callback may register and unregister.
template <typename Callbacks> Callbacks CopyOf(const Callbacks& registered)
{
    const Allocations::Pause pause;
    return registered;
}

void ChangeCharger(bool isCharging)
{
    sState.isCharging = isCharging;
    if (sState.chargerCallback)
    {
        sState.chargerCallback(DEVICE_CALLBACK_BATTERY_CHARGING,
                               reinterpret_cast<void*>(static_cast<std::intptr_t>(isCharging)),
                               sState.chargerData);
    }
}

} // namespace

std::function<int(ui_app_lifecycle_callback_s*, void*)> sMainLoop;

void Reset()
{
    sState = State();
    sMainLoop = nullptr;
}

std::string ResourceDirectory()
{
    return RESOURCE_DIRECTORY "/";
}

const std::vector<LogLine>& LogLines()
{
    return sState.logLines;
}

void SetLanguage(const char* language)
{
    sState.hasLanguage = language != nullptr;
    sState.language = language ? language : "";
}

void ChangeSetting(system_settings_key_e key)
{
    const auto setting = sState.settingCallbacks.find(key);
    if (setting != sState.settingCallbacks.end())
    {
        setting->second.callback(key, setting->second.data);
    }
}

void SetCharging(bool isCharging)
{
    sState.isCharging = isCharging;
}

void PlugCharger()
{
    ChangeCharger(true);
}

void UnplugCharger()
{
    ChangeCharger(false);
}

void FillOutputsOnFailure()
{
    sState.fillsOutputsOnFailure = true;
}

void LeaveOutputs()
{
    sState.leavesOutputs = true;
}

app_control_h MakeRequest(const char* operation,
                          const std::map<std::string, std::string>& extraData)
{
    const Allocations::Pause pause;
    sState.requests.push_back(std::make_unique<app_control_s>(
        app_control_s{operation != nullptr, operation ? operation : "", extraData}));
    Recorder::Name(sState.requests.back().get(), "request");
    return sState.requests.back().get();
}

void PressBack(Evas_Object* object)
{
    const std::vector<BackCallback> registered = CopyOf(sState.backCallbacks);
    for (const BackCallback& back : registered)
    {
        if (back.object == object)
        {
            back.callback(back.data, object, nullptr);
        }
    }
}

void TurnBezel(Evas_Object* object, Eext_Rotary_Event_Direction direction, unsigned timeStamp)
{
    Eext_Rotary_Event_Info info = {direction, timeStamp};
    const std::vector<RotaryCallback> registered = CopyOf(sState.rotaryCallbacks);
    for (const RotaryCallback& rotary : registered)
    {
        if (rotary.object == object)
        {
            const Eina_Bool isTaken = rotary.callback(rotary.data, object, &info);
            const Allocations::Pause pause;
            Recorder::Add(isTaken ? "detent taken" : "detent passed on");
        }
    }
}

Evas_Object* ActivatedObject()
{
    return sState.activatedObject;
}

} // namespace Platform
