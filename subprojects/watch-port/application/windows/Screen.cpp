#include "application/windows/Screen.h"

#include <Ecore_X.h>
#include <Elementary.h>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>
#include <vector>

namespace WatchPort
{

namespace
{
constexpr int kUsualSize = 360;
constexpr double kUsualScale = 1.3;
// With the toolkit's own 0.25 a flicked page drops to a sixth of the finger's speed at once.
constexpr double kFlickSpeed = 2.0;

// Keeps the toolkit's own theme read, as long as the object lives.
class HeldTheme
{
public:
    HeldTheme()
    {
        char* path = elm_theme_list_item_path_get("default", nullptr);
        mFile = !path ? nullptr : eina_file_open(path, EINA_FALSE);
        std::free(path);
        if (mFile)
            mHold = edje_mmap_color_class_iterator_new(mFile);
    }
    ~HeldTheme()
    {
        if (mHold)
            eina_iterator_free(mHold);
        if (mFile)
            eina_file_close(mFile);
    }
    HeldTheme(const HeldTheme&) = delete;
    HeldTheme& operator=(const HeldTheme&) = delete;

private:
    Eina_File* mFile;
    Eina_Iterator* mHold = nullptr;
};

// Every 64 seconds the toolkit would wake a watch that sleeps; the caches have limits without it.
void StopCacheClock()
{
    // It flushes once when told so, and has not used its theme yet, whose directory is long.
    const HeldTheme theme;
    elm_config_cache_flush_enabled_set(EINA_FALSE);
}
} // namespace

int ScreenSize(const Display& display)
{
    if (display.GetKind() != Display::Kind::X11)
        return kUsualSize;
    int width = 0;
    int height = 0;
    ecore_x_screen_size_get(ecore_x_default_screen_get(), &width, &height);
    return width == height ? width : kUsualSize;
}

void DropToolkitSettings()
{
    std::vector<std::string> names;
    for (char** variable = environ; variable && *variable; ++variable)
    {
        const std::string name(*variable, std::strcspn(*variable, "="));
        if ((name.rfind("ELM_", 0) == 0 && name != "ELM_ENGINE") || name == "EVAS_FONT_DPI")
            names.push_back(name);
    }
    for (const std::string& name : names)
        unsetenv(name.c_str());
}

void SetUpToolkit(const Display& display)
{
    elm_config_scroll_thumbscroll_enabled_set(EINA_TRUE);
    elm_config_scroll_bounce_enabled_set(EINA_TRUE);
    elm_config_scroll_thumbscroll_sensitivity_friction_set(kFlickSpeed);
    StopCacheClock();
    elm_config_scale_set(kUsualScale * ScreenSize(display) / kUsualSize);
}

} // namespace WatchPort
