#ifndef TESTS_CONTRACT_HARNESS_RECORDER_H
#define TESTS_CONTRACT_HARNESS_RECORDER_H

#include "support/Allocations.h"
#include <cstdint>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

/**
 * Records the calls that the code under test makes of the toolkit and of the watch, in order
 * and with their arguments, and tells single calls to fail.
 *
 * A call reads as in the code, with its objects by name:
 *
 *     elm_layout_add(window)                   the new widget is "layout1", the next "layout2"
 *     elm_object_signal_emit(layout1, 'show_arrow', '*')
 *     evas_object_smart_callback_add(naviframe1, 'scroll', GuideView::SOnScrollCB, view)
 *
 * Texts stand in single quotes, files of the resource directory as 'RES/...', callbacks by
 * their class and name, objects that nobody named as "?". A log line stands among the calls as
 * its class, its function and its text:
 *
 *     error(CreateWindow) elm_win_add
 *     mark(SOnAppCreate)
 */
namespace Recorder
{

using Lines = std::vector<std::string>;

/** Forgets calls, names and told answers. */
void Reset();

/** The calls and log lines since the last one, which are then forgotten. */
Lines Take();

/** As Take(), but only the lines that start with one of the given words. */
Lines TakeOnly(const Lines& beginnings);

/** As Take(), but only log lines. */
Lines TakeLog();

/** Gives an object a name; a later one replaces it. */
void Name(const void* object, const std::string& name);

/** The text of an object, as calls show it. */
std::string NameOf(const void* object);

/** A line with the names of the objects in place of their addresses. */
std::string WithNames(std::string line);

/** The nth next call of this name is not passed on and returns `value`. */
void Answer(const std::string& call, std::intptr_t value, int nth = 1);

/** The nth next call of this name is not passed on and returns null, false or zero. */
void Fail(const std::string& call, int nth = 1);

/**
 * What cannot be made has its number from now on: after a failed elm_layout_add() the next one
 * makes "layout2", as it would have without the failure.
 */
void NumberFailures();

/** Adds a line, for what a test's own listeners hear. */
void Add(const std::string& line);

/** How often each call has been made since the last Reset(), also those that leave no line. */
const std::map<std::string, int>& TimesMade();

/** Whether a test told this call what to answer; takes the answer. */
bool TakeAnswer(const char* call, std::intptr_t& value);

/** Names the result of a call that makes something, "layout1" for elm_layout_add(). */
void NameResult(const char* call, const void* result);

std::string Describe(const char* text);
std::string Describe(double number);
std::string Describe(long long number);
std::string DescribeFunction(const void* function);

template <typename T> std::string DescribeArgument(T argument)
{
    if constexpr (std::is_same_v<T, const char*> || std::is_same_v<T, char*>)
    {
        return Describe(static_cast<const char*>(argument));
    }
    else if constexpr (std::is_same_v<T, unsigned char> || std::is_same_v<T, bool>)
    {
        return argument ? "true" : "false";
    }
    else if constexpr (std::is_floating_point_v<T>)
    {
        return Describe(static_cast<double>(argument));
    }
    else if constexpr (std::is_enum_v<T> || std::is_integral_v<T>)
    {
        return Describe(static_cast<long long>(argument));
    }
    else if constexpr (std::is_function_v<std::remove_pointer_t<T>>)
    {
        return DescribeFunction(reinterpret_cast<const void*>(argument));
    }
    else
    {
        return NameOf(argument);
    }
}

/** Records one call. */
template <typename... A> void AddCall(const char* name, A... arguments)
{
    const Allocations::Pause pause;
    std::string line = std::string(name) + "(";
    [[maybe_unused]] const char* separator = "";
    ((line += separator + DescribeArgument(arguments), separator = ", "), ...);
    Add(line + ")");
}

/** Records one call of the toolkit and passes it on, unless it was told an answer. */
template <typename R, typename... A> R Pass(const char* name, R (*real)(A...), A... arguments)
{
    AddCall(name, arguments...);
    std::intptr_t answer = 0;
    const bool isTold = TakeAnswer(name, answer);
    if constexpr (std::is_void_v<R>)
    {
        if (!isTold)
        {
            real(arguments...);
        }
    }
    else
    {
        R result = isTold ? (R)answer : real(arguments...);
        if constexpr (std::is_pointer_v<R>)
        {
            // What a test gave as the answer has its name from there.
            if (!isTold || !result)
            {
                NameResult(name, static_cast<const void*>(result));
            }
        }
        return result;
    }
}

} // namespace Recorder

#endif
