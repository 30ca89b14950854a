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
    std::map<std::string, int> timesMade;
    bool numbersFailures = false;
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

std::string WithNames(std::string line)
{
    std::size_t begin = 0;
    while ((begin = line.find("0x", begin)) != std::string::npos)
    {
        const std::size_t digits = begin + 2;
        const std::size_t end =
            std::min(line.find_first_not_of("0123456789abcdef", digits), line.size());
        const std::uintptr_t address = std::stoull(line.substr(digits, end - digits), nullptr, 16);
        const std::string name = NameOf(reinterpret_cast<const void*>(address));
        line.replace(begin, end - begin, name);
        begin += name.size();
    }
    return line;
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
    const Allocations::Pause pause;
    sState.lines.push_back(line);
}

void NumberFailures()
{
    sState.numbersFailures = true;
}

const std::map<std::string, int>& TimesMade()
{
    return sState.timesMade;
}

bool TakeAnswer(const char* call, std::intptr_t& value)
{
    const Allocations::Pause pause;
    ++sState.timesMade[call];
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

void NameResult(const char* call, const void* result)
{
    const Allocations::Pause pause;
    const std::string kind = KindOf(call);
    if (kind.empty())
    {
        return;
    }
    if (result)
    {
        Name(result, kind + std::to_string(++sState.counters[kind]));
    }
    else if (sState.numbersFailures)
    {
        ++sState.counters[kind];
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
    // To find a name takes long, and the same few are asked for again and again.
    static std::map<const void*, std::string> sNames;
    std::string& name = sNames[function];
    if (name.empty())
    {
        Dl_info info = {};
        dladdr(function, &info);
        name = info.dli_sname ? ShortName(info.dli_sname) : "?";
    }
    return name;
}

} // namespace Recorder
