#include "faults/Ways.h"

#include "harness/Platform.h"
#include "harness/Recorder.h"
#include <Elementary.h>
#include <map>
#include <type_traits>
#include <ui_extension.h>

namespace Ways
{

namespace
{

Way Answering(const std::string& name, std::intptr_t answer)
{
    return {name,
            [answer](const std::string& call, int nth) { Recorder::Answer(call, answer, nth); }};
}

const Way kNull = Answering("null", 0);

// Success by its result, but nothing to go with it.
const Way kEmpty = {"0, but nothing given", [](const std::string& call, int nth)
                    {
                        Platform::LeaveOutputs();
                        Recorder::Answer(call, 0, nth);
                    }};

// Failure by its result, but its output is filled all the same.
const Way kFilled = {"-1, but something given", [](const std::string& call, int nth)
                     {
                         Platform::FillOutputsOnFailure();
                         Recorder::Answer(call, -1, nth);
                     }};

template <typename Result> std::vector<Way> WaysOf()
{
    if constexpr (std::is_void_v<Result>)
    {
        return {Answering("not done", 0)};
    }
    else if constexpr (std::is_pointer_v<Result>)
    {
        return {kNull};
    }
    else if constexpr (std::is_same_v<Result, Eina_Bool>)
    {
        return {Answering("false", 0)};
    }
    else
    {
        return {Answering("-1", -1), Answering("1", 1)};
    }
}

// What the result's type does not tell.
const std::map<std::string, std::vector<Way>> kFurtherWays = {
    {"app_control_create", {kFilled, kEmpty}},
    {"app_control_get_extra_data", {kFilled, kEmpty}},
    {"app_control_get_operation", {kEmpty}},
    {"device_battery_is_charging", {kFilled}},
    {"system_settings_get_value_string", {kEmpty}},
};

const std::map<std::string, std::string> kCannotFail = {
    {"elm_object_item_data_set", "sets a field of the item that has just been made"},
    {"evas_object_event_callback_del", "null says that there was no such callback to delete"},
    {"evas_object_smart_callback_del", "null says that there was no such callback to delete"},
    {"ecore_event_handler_del", "takes the handler that was added; its result is the data"},
    {"elm_object_item_del_cb_set", "sets a field of the item, which its handle knows to be there"},
    {"dgettext",
     "gives the id of a text that it cannot translate, which is the tests' ordinary case"},
};

std::vector<Call> Collect()
{
    std::vector<Call> calls = {
#define CALL1(R, name, ...) {#name, WaysOf<R>()},
#define CALL2 CALL1
#define CALL3 CALL1
#define CALL4 CALL1
#define CALL6 CALL1
#define CALL7 CALL1
#define FAKE(R, name) {#name, WaysOf<R>()},
#include "harness/Calls.def"
    };
    for (Call& call : calls)
    {
        if (kCannotFail.count(call.name) > 0)
        {
            call.ways.clear();
        }
        if (call.name == "__dlog_print")
        {
            // Nobody looks at its result; one failure stands for all.
            call.ways.resize(1);
        }
        const auto further = kFurtherWays.find(call.name);
        if (further != kFurtherWays.end())
        {
            call.ways.insert(call.ways.end(), further->second.begin(), further->second.end());
        }
    }
    return calls;
}

} // namespace

const std::vector<Call>& AllCalls()
{
    static const std::vector<Call> kCalls = Collect();
    return kCalls;
}

std::string WhyItCannotFail(const std::string& call)
{
    const auto reason = kCannotFail.find(call);
    return reason == kCannotFail.end() ? "" : reason->second;
}

} // namespace Ways
