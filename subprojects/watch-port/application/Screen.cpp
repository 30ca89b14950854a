#include "application/Screen.h"

#include <Ecore_X.h>
#include <Elementary.h>
#include <cstdlib>

namespace
{
constexpr int kUsualSize = 360;
constexpr double kUsualScale = 1.3;
// With the toolkit's own 0.25 a flicked page drops to a sixth of the finger's speed at once.
constexpr double kFlickSpeed = 2.0;
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

void SetUpToolkit(const Display& display)
{
    elm_config_scroll_thumbscroll_enabled_set(EINA_TRUE);
    elm_config_scroll_bounce_enabled_set(EINA_TRUE);
    elm_config_scroll_thumbscroll_sensitivity_friction_set(kFlickSpeed);
    // Every 64 seconds it would wake a watch that sleeps; the caches have limits without it.
    elm_config_cache_flush_enabled_set(EINA_FALSE);
    if (std::getenv("ELM_SCALE") == nullptr)
        elm_config_scale_set(kUsualScale * ScreenSize(display) / kUsualSize);
}
