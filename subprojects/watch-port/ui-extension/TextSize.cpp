#include "ui-extension/TextSize.h"

#include "ui-extension/Appearance.h"

#include <Elementary.h>
#include <algorithm>
#include <cmath>

namespace WatchPort
{

namespace
{

constexpr double kSmallest = 0.8;
constexpr double kLargest = 2.0;
constexpr int kScreenHeight = 360;
constexpr int kUsualLines = 8;

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

// A screen is a whole number of lines high, so that a page can show whole lines wherever it rests.
int TextSize::LineHeight() const
{
    return kScreenHeight / (kUsualLines * 100 / Percent());
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
