#include "harness/Recorder.h"

#include "harness/Platform.h"
#include <algorithm>
#include <cstdio>
#include <cxxabi.h>
#include <dlfcn.h>
#include <map>
#include <memory>

namespace Recorder
{

namespace
{

struct State
{
    Lines lines;
    std::map<const void*, std::string> names;
    std::map<std::string, int> counters;
    std::map<std::string, std::map<int, std::intptr_t>> answers;
};

State sState;

bool StartsWith(const std::string& text, const std::string& beginning)
{
    return text.compare(0, beginning.size(), beginning) == 0;
}

bool IsLogLine(const std::string& line)
{
    static const Lines kClasses = {"error(", "warn(", "info(", "mark(", "begin(", "end("};
    return std::any_of(kClasses.begin(), kClasses.end(),
                       [&](const std::string& prefix) { return StartsWith(line, prefix); });
}

// What a maker's result is called, or nothing for a call that makes nothing.
std::string KindOf(const std::string& call)
{
    static const std::map<std::string, std::string> kKinds = {
        {"elm_win_add", "window"},
        {"elm_bg_add", "background"},
        {"elm_conformant_add", "conformant"},
        {"elm_layout_add", "layout"},
        {"elm_scroller_add", "scroller"},
        {"elm_box_add", "box"},
        {"elm_image_add", "image"},
        {"elm_naviframe_add", "naviframe"},
        {"elm_naviframe_item_push", "item"},
        {"elm_naviframe_item_insert_after", "item"},
        {"elm_naviframe_items_get", "list"},
        {"elm_entry_utf8_to_markup", ""},
        {"ecore_event_handler_add", "handler"},
        {"eext_circle_object_scroller_add", "circle"},
        {"eext_circle_surface_conformant_add", "surface"},
        {"app_control_create", "request"},
    };
    const auto kind = kKinds.find(call);
    return kind == kKinds.end() ? "" : kind->second;
}

// "QivoUi::BaseView::SLayoutBackCB(void*, ...)" -> "BaseView::SLayoutBackCB"
std::string ShortName(const char* symbol)
{
    int status = 0;
    std::unique_ptr<char, void (*)(void*)> demangled(
        abi::__cxa_demangle(symbol, nullptr, nullptr, &status), std::free);
    std::string name = status == 0 ? demangled.get() : symbol;
    name = name.substr(0, name.find('('));
    const std::string space = "QivoUi::";
    return StartsWith(name, space) ? name.substr(space.size()) : name;
}

} // namespace

void Reset()
{
    sState = State();
}

Lines Take()
{
    Lines lines;
    lines.swap(sState.lines);
    return lines;
}

Lines TakeOnly(const Lines& beginnings)
{
    Lines kept;
    for (const std::string& line : Take())
    {
        if (std::any_of(beginnings.begin(), beginnings.end(),
                        [&](const std::string& word) { return StartsWith(line, word); }))
        {
            kept.push_back(line);
        }
    }
    return kept;
}

Lines TakeLog()
{
    Lines lines = Take();
    lines.erase(std::remove_if(lines.begin(), lines.end(),
                               [](const std::string& line) { return !IsLogLine(line); }),
                lines.end());
    return lines;
}

void Name(const void* object, const std::string& name)
{
    sState.names[object] = name;
}

std::string NameOf(const void* object)
{
    if (!object)
    {
        return "null";
    }
    const auto name = sState.names.find(object);
    return name == sState.names.end() ? "?" : name->second;
}

void Answer(const std::string& call, std::intptr_t value, int nth)
{
    sState.answers[call][nth] = value;
}

void Fail(const std::string& call, int nth)
{
    Answer(call, 0, nth);
}

void Add(const std::string& line)
{
    sState.lines.push_back(line);
}

bool TakeAnswer(const std::string& call, std::intptr_t& value)
{
    const auto told = sState.answers.find(call);
    if (told == sState.answers.end())
    {
        return false;
    }
    std::map<int, std::intptr_t> later;
    bool isTold = false;
    for (const auto& [nth, answer] : told->second)
    {
        if (nth == 1)
        {
            value = answer;
            isTold = true;
        }
        else
        {
            later[nth - 1] = answer;
        }
    }
    told->second = later;
    return isTold;
}

void NameResult(const std::string& call, const void* result)
{
    const std::string kind = KindOf(call);
    if (result && !kind.empty())
    {
        Name(result, kind + std::to_string(++sState.counters[kind]));
    }
}

std::string Describe(const char* text)
{
    if (!text)
    {
        return "null";
    }
    const std::string resources = Platform::ResourceDirectory();
    std::string shown = text;
    if (StartsWith(shown, resources))
    {
        shown = "RES/" + shown.substr(resources.size());
    }
    return "'" + shown + "'";
}

std::string Describe(double number)
{
    char text[32];
    std::snprintf(text, sizeof(text), "%g", number);
    return text;
}

std::string Describe(long long number)
{
    return std::to_string(number);
}

std::string DescribeFunction(const void* function)
{
    if (!function)
    {
        return "null";
    }
    Dl_info info = {};
    dladdr(function, &info);
    return info.dli_sname ? ShortName(info.dli_sname) : "?";
}

} // namespace Recorder
