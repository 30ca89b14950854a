#include "application/Toolkit.h"

#include "application/fast-start/HeldTheme.h"

#include <Efreet.h>
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
constexpr double kUsualScale = 1.3;
// With the toolkit's own 0.25 a flicked page drops to a sixth of the finger's speed at once.
constexpr double kFlickSpeed = 2.0;
// Of a detent's way, a quarter of the screen. Each frame costs, and the toolkit's own 0.5 seconds
// are longer than the eye needs to follow.
constexpr double kMotionSeconds = 0.3;

// Every 64 seconds the toolkit would wake a watch that sleeps; the caches have limits without it.
void StopCacheClock()
{
    // The call flushes once.
    const HeldTheme theme;
    elm_config_cache_flush_enabled_set(EINA_FALSE);
}

void DropSettings()
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

// A thread of its own for drawing has the loop wait for it and woken by it three times a frame:
// nearly half of what a frame costs. A watch's page is drawn in less time than a frame lasts.
void DrawOnMainThread()
{
    setenv("ECORE_EVAS_FORCE_SYNC_RENDER", "1", 1);
}

void SetUp(const Display& display)
{
    elm_config_scroll_thumbscroll_enabled_set(EINA_TRUE);
    elm_config_scroll_bounce_enabled_set(EINA_TRUE);
    elm_config_scroll_thumbscroll_sensitivity_friction_set(kFlickSpeed);
    elm_config_scroll_bring_in_scroll_friction_set(kMotionSeconds);
    StopCacheClock();
    // The port's own bridge to screen readers takes its place (access/AccessBus.h).
    elm_config_atspi_mode_set(EINA_FALSE);
    elm_config_scale_set(kUsualScale * display.GetScreenSize() / Display::kUsualScreenSize);
}
} // namespace

void Toolkit::Prepare()
{
    DropSettings();
    DrawOnMainThread();
    efreet_cache_disable();
    ecore_app_no_system_modules();
}

Toolkit::Toolkit(int argc, char** argv, const Display& display) : mIsUp(elm_init(argc, argv) > 0)
{
    mFonts.Keep();
    if (mIsUp)
        SetUp(display);
}

Toolkit::~Toolkit()
{
    if (mIsUp)
        elm_shutdown();
}

} // namespace WatchPort
