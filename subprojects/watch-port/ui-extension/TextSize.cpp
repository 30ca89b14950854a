#include "ui-extension/TextSize.h"

#include "ui-extension/Appearance.h"

#include <Elementary.h>
#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace WatchPort
{

namespace
{

constexpr double kSmallest = 0.8;
constexpr double kLargest = 2.0;

// The height of a line up to a text size in percent. A screen of 360 is a whole number of lines.
constexpr std::pair<int, int> kLines[] = {{100, 45}, {133, 60}, {160, 72}, {200, 90}};

// What the toolkit's theme has besides the classes that the toolkit lists.
constexpr const char* kUnlistedClasses[] = {"tb_plain", "tb_light", "tb_big", "label_light",
                                            "list_item_selected"};

// A negative size is a part of the theme's own, in percent.
void EnlargeClass(const char* name, int percent)
{
    if (percent == 100)
        edje_text_class_del(name);
    else
        edje_text_class_set(name, nullptr, -percent);
}

void EnlargeToolkit(int percent)
{
    Eina_List* classes = elm_config_text_classes_list_get();
    const Eina_List* link = nullptr;
    void* item = nullptr;
    EINA_LIST_FOREACH(classes, link, item)
    {
        EnlargeClass(static_cast<Elm_Text_Class*>(item)->name, percent);
    }
    elm_config_text_classes_list_free(classes);
    for (const char* name : kUnlistedClasses)
        EnlargeClass(name, percent);
}

} // namespace

TextSize::TextSize(double factor)
    : mFactor(std::isnan(factor) ? 1.0 : std::clamp(factor, kSmallest, kLargest))
{
}

int TextSize::Of(int fontSize) const
{
    return std::max(1, static_cast<int>(std::lround(fontSize * mFactor)));
}

int TextSize::LineHeight() const
{
    return std::find_if(std::begin(kLines), std::end(kLines),
                        [this](const auto& line) { return Percent() <= line.first; })
        ->second;
}

void TextSize::Publish() const
{
    EnlargeToolkit(Percent());
    if (Percent() == 100)
        edje_size_class_del(kTextSizeClass);
    else
        edje_size_class_set(kTextSizeClass, Percent(), LineHeight(), Percent(), LineHeight());
}

} // namespace WatchPort
